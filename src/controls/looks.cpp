// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/looks.h"

#include <algorithm>
#include <limits>

namespace quarlin {

Marked Within(Marked marked, std::size_t textLength) {
  constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
  const auto end = static_cast<std::int32_t>(std::min(textLength, most));
  const std::int32_t start = std::clamp(marked.start, 0, end);
  return {start, std::clamp(marked.length, 0, end - start)};
}

}  // namespace quarlin
