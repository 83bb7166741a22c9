// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/survey/near_name.h"

#include <algorithm>
#include <string>
#include <vector>

#include "script/survey/mentions.h"
#include "script/values/dispatch.h"

namespace quarlin::survey {

std::size_t Distance(std::u16string_view one, std::u16string_view other) {
  const std::u16string left = FoldedName(one);
  const std::u16string right = FoldedName(other);
  // The distances of all beginnings: of this row's letter of `left`, and of the two before.
  std::vector<std::size_t> before(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t change = left[i - 1] == right[j - 1] ? 0 : 1;
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + change});
      const bool swapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
      if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(last);
    last.swap(row);
  }
  return last[right.size()];
}

std::optional<std::u16string_view> HookMeantBy(std::u16string_view name) {
  constexpr std::size_t lettersForOne = 5;
  constexpr std::size_t most = 2;
  std::u16string bare(name);
  std::erase(bare, u'_');
  for (const std::u16string_view hook : hookNames) {
    if (vbs::SameName(hook, name)) return std::nullopt;
  }
  for (const std::u16string_view hook : hookNames) {
    const std::size_t allowed = std::clamp<std::size_t>(hook.size() / lettersForOne, 1, most);
    if (Distance(bare, hook) <= allowed) return hook;
  }
  return std::nullopt;
}

}  // namespace quarlin::survey
