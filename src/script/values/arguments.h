// SPDX-License-Identifier: GPL-3.0-or-later
// What functions and members need again and again: their arguments as texts, counts and choices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "script/values/conversions.h"
#include "script/values/dispatch.h"

namespace quarlin::vbs {

// An argument, or nothing where it was left out.
inline const Value* Given(Arguments arguments, std::size_t index) {
  return index < arguments.size() && !arguments[index].IsMissing() ? &arguments[index] : nullptr;
}

// A position or a count. The kinds that loop counters have need no call.
inline std::int32_t CountOf(const Value& value) {
  if (value.Is(Kind::Integer) || value.Is(Kind::Long)) return static_cast<std::int32_t>(value.AsWhole());
  return ToLong(value);
}

inline std::int32_t CountOr(Arguments arguments, std::size_t index, std::int32_t otherwise) {
  const Value* given = Given(arguments, index);
  return given == nullptr ? otherwise : CountOf(*given);
}

inline bool FlagOr(Arguments arguments, std::size_t index, bool otherwise) {
  const Value* given = Given(arguments, index);
  return given == nullptr ? otherwise : ToBool(*given);
}

// CountOr for an argument that names one of a few choices: error 5 outside of `least` to `most`.
std::int32_t ChoiceOr(Arguments arguments, std::size_t index, std::int32_t otherwise, std::int32_t least,
                      std::int32_t most);

// The optional argument that tells how texts compare: 0 (also where it is left out) by code unit, 1
// without regard to case. Error 5 for any other.
bool IgnoresCase(Arguments arguments, std::size_t index);

// Whether it is Null, or an object that stands for Null.
bool StandsForNull(const Value& value);

// An argument as a text, without a copy where it is one already. The argument must outlive it.
class GivenText {
 public:
  explicit GivenText(const Value& value) {
    if (value.IsString()) {
      Share(value);
    } else {
      Convert(value);
    }
  }
  GivenText(const GivenText&) = delete;
  GivenText& operator=(const GivenText&) = delete;

  bool IsNull() const { return null_; }

  // Error 94 when it is Null.
  std::u16string_view View() const {
    if (null_) throw ScriptError(invalidUseOfNull);
    return view_;
  }

  // `count` units from `from` on, which the text must have; the text itself where that is all of it.
  Value Part(std::size_t from, std::size_t count) const {
    if (count == view_.size() && text_ != nullptr) return *text_;
    return Value::String(view_.substr(from, count));
  }

 private:
  void Share(const Value& text) {
    text_ = &text;
    view_ = text.AsText();
  }
  void Convert(const Value& value);

  const Value* text_ = nullptr;  // null when it was no text, but became one
  std::u16string_view view_;
  Value plain_;
  std::u16string scratch_;
  bool null_ = false;
};

}  // namespace quarlin::vbs
