// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/arguments.h"

namespace quarlin::vbs {

std::int32_t ChoiceOr(Arguments arguments, std::size_t index, std::int32_t otherwise, std::int32_t least,
                      std::int32_t most) {
  const std::int32_t choice = CountOr(arguments, index, otherwise);
  if (choice < least || choice > most) throw ScriptError(invalidCall);
  return choice;
}

bool IgnoresCase(Arguments arguments, std::size_t index) {
  constexpr std::int32_t binaryCompare = 0;
  constexpr std::int32_t textCompare = 1;
  return ChoiceOr(arguments, index, binaryCompare, binaryCompare, textCompare) == textCompare;
}

bool StandsForNull(const Value& value) {
  return value.IsNull() || (value.IsObject() && Plain(value).IsNull());
}

void GivenText::Convert(const Value& value) {
  if (value.IsNull()) {
    null_ = true;
  } else if (!value.IsObject()) {
    view_ = ToTextView(value, scratch_);
  } else {
    plain_ = Plain(value);
    if (plain_.IsString()) {
      Share(plain_);
    } else {
      Convert(plain_);
    }
  }
}

}  // namespace quarlin::vbs
