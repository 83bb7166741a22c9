// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/dispatch.h"

#include <algorithm>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

int NumberOf(Dispatch& object, std::u16string_view name) {
  const auto member = object.Find(name);
  if (!member) throw ScriptError(noSuchMember, name);
  return *member;
}

}  // namespace

Value InvokeByName(Dispatch& object, std::u16string_view name, Arguments arguments) {
  return object.Invoke(NumberOf(object, name), arguments);
}

void PutByName(Dispatch& object, std::u16string_view name, const Value& value, PutKind kind) {
  object.Put(NumberOf(object, name), {}, value, kind);
}

bool SameName(std::u16string_view left, std::u16string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(),
                    [](char16_t a, char16_t b) { return a == b || LowerOf(a) == LowerOf(b); });
}

}  // namespace quarlin::vbs
