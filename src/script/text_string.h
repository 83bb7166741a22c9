// SPDX-License-Identifier: GPL-3.0-or-later
// Lets a script write into the received-text display.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "controls/control.h"
#include "script/values/dispatch.h"

namespace quarlin {

class TextString : public vbs::TableObject<TextString> {
 public:
  using Append = std::function<void(std::string_view text, Color color)>;

  explicit TextString(Append append) : append_(std::move(append)) {}

  static std::span<const vbs::Member<TextString>> Members();
  std::u16string_view TypeName() const override { return u"TextString"; }

 private:
  Append append_;
};

}  // namespace quarlin
