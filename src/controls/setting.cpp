// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/setting.h"

#include <fmt/format.h>

#include "base/numbers.h"
#include "base/text.h"
#include "controls/controls.h"

namespace quarlin {

std::string NameWithIndex(const Control& control) {
  return control.Index() ? fmt::format("{}({})", control.Name(), *control.Index()) : control.Name();
}

std::optional<std::string> SettingText(const Control& control) {
  switch (control.Kind()) {
    case ControlKind::TextBox:
      return static_cast<const TextBox&>(control).Text();
    case ControlKind::ComboBox:
      return static_cast<const ComboBox&>(control).Text();
    case ControlKind::CheckBox:
      return PaddedDecimal(static_cast<const CheckBox&>(control).Value(), 1);
    case ControlKind::OptionButton:
      return static_cast<const OptionButton&>(control).Value() ? "1" : "0";
    default:
      return std::nullopt;
  }
}

std::vector<Setting> SettingsOf(const ControlCollection& controls) {
  std::vector<Setting> settings;
  for (const Control* control : controls.All()) {
    std::optional<std::string> text = SettingText(*control);
    if (!text || TrimBlanks(control->Name()).empty()) continue;
    settings.push_back({NameWithIndex(*control), std::move(*text)});
  }
  return settings;
}

}  // namespace quarlin
