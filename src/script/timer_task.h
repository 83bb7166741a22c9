// SPDX-License-Identifier: GPL-3.0-or-later
// The periodic task of a script: how often it runs, and what its next tick is to send.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "script/values/dispatch.h"

namespace quarlin {

class TimerTask : public vbs::TableObject<TimerTask> {
 public:
  static std::span<const vbs::Member<TimerTask>> Members();
  std::u16string_view TypeName() const override { return u"TimerTask"; }

  std::int32_t Interval() const { return interval_; }  // milliseconds; 0: no periodic task

  // What the script left in its SendString; empty from then on.
  std::string StringSend();

 private:
  vbs::Value TakeText();

  std::int32_t interval_ = 0;
  vbs::Value text_ = vbs::Value::String(u"");
};

}  // namespace quarlin
