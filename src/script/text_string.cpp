// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/text_string.h"

#include <array>

#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

std::span<const vbs::Member<TextString>> TextString::Members() {
  static constexpr std::array<vbs::Member<TextString>, 1> members{{
      {u"RichAppendText", vbs::MemberKind::Method, 2, 2,
       [](TextString& self, Arguments arguments) {
         const Color color = vbs::ToLong(arguments[0]);
         self.append_(BytesOfValue(arguments[1]), color);
         return Value();
       }},
  }};
  return members;
}

}  // namespace quarlin
