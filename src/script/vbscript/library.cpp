// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/library.h"

namespace quarlin::vbs {

const Value* Given(Arguments arguments, std::size_t index) {
  return index < arguments.size() && !arguments[index].IsMissing() ? &arguments[index] : nullptr;
}

}  // namespace quarlin::vbs
