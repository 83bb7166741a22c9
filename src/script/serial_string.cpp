// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/serial_string.h"

#include <array>

#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

std::span<const vbs::Member<SerialString>> SerialString::Members() {
  static constexpr std::array<vbs::Member<SerialString>, 2> members{{
      {u"OutputString", vbs::MemberKind::Property, 0, 0,
       [](SerialString& self, Arguments) { return self.output_; },
       [](SerialString& self, Arguments, const Value& value) { self.output_ = vbs::ToTextValue(value); }},
      {u"InputString", vbs::MemberKind::Property, 0, 0,
       [](SerialString& self, Arguments) { return self.input_; },
       [](SerialString& self, Arguments, const Value& value) { self.input_ = vbs::ToTextValue(value); }},
  }};
  return members;
}

void SerialString::SetInputString(std::string_view bytes) {
  input_ = TextValue(bytes);
}

std::string SerialString::OutputString() const {
  return BytesFromUtf16(output_.AsText());
}

}  // namespace quarlin
