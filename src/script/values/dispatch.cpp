// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/dispatch.h"

#include <algorithm>

#include "script/values/conversions.h"

namespace quarlin::vbs {

Value InvokeByName(Dispatch& object, std::u16string_view name, Arguments arguments) {
  const auto member = object.Find(name);
  if (!member) throw ScriptError(noSuchMember, name);
  return object.Invoke(*member, arguments);
}

bool SameName(std::u16string_view left, std::u16string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char16_t a, char16_t b) { return a == b || LowerOf(a) == LowerOf(b); });
}

}  // namespace quarlin::vbs
