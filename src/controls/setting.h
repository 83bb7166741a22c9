// SPDX-License-Identifier: GPL-3.0-or-later
// What a control contributes to the settings of the program: its value as one text.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controls/collection.h"

namespace quarlin {

struct Setting {
  std::string name;
  std::string value;
};

// "Option4(2)" for a control within a control array, else its name.
std::string NameWithIndex(const Control& control);

// The text of a text box or combo box, 0, 1 or 2 for a check box, 0 or 1 for an option button; nothing for
// the other kinds, which have no value to keep.
std::optional<std::string> SettingText(const Control& control);

// Of every control that has a value and a name, in the collection's order.
std::vector<Setting> SettingsOf(const ControlCollection& controls);

}  // namespace quarlin
