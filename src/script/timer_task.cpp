// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/timer_task.h"

#include <array>
#include <utility>

#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

std::span<const vbs::Member<TimerTask>> TimerTask::Members() {
  static constexpr std::array<vbs::Member<TimerTask>, 3> members{{
      {u"SendString", vbs::MemberKind::Property, 0, 0, nullptr,
       [](TimerTask& self, Arguments, const Value& value) { self.text_ = vbs::ToTextValue(value); }},
      {u"Interval", vbs::MemberKind::Property, 0, 0,
       [](TimerTask& self, Arguments) { return Value::Long(self.interval_); },
       [](TimerTask& self, Arguments, const Value& value) { self.interval_ = vbs::ToLong(value); }},
      {u"StringSend", vbs::MemberKind::Property, 0, 0,
       [](TimerTask& self, Arguments) { return self.TakeText(); }},
  }};
  return members;
}

Value TimerTask::TakeText() {
  return std::exchange(text_, Value::String(u""));
}

std::string TimerTask::StringSend() {
  return BytesFromUtf16(TakeText().AsText());
}

}  // namespace quarlin
