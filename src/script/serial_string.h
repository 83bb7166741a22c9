// SPDX-License-Identifier: GPL-3.0-or-later
// What a hook of a script works on: the text that came, and the text that is to take its place.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "script/values/dispatch.h"

namespace quarlin {

class SerialString : public vbs::TableObject<SerialString> {
 public:
  static std::span<const vbs::Member<SerialString>> Members();
  std::u16string_view TypeName() const override { return u"SerialString"; }

  void SetInputString(std::string_view bytes);

  // Nobody but the script writes it, so it keeps its value from one call to the next.
  std::string OutputString() const;

 private:
  vbs::Value output_ = vbs::Value::String(u"");
  vbs::Value input_ = vbs::Value::String(u"");
};

}  // namespace quarlin
