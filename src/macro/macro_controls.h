// SPDX-License-Identifier: GPL-3.0-or-later
// The settings of the macro language.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct MacroControls : ControlGroup {
  using ControlGroup::ControlGroup;
  TextBox txtcfr{*this, "txtcfr", "3"};    // digits of [COUNTER] and [COUNTERHEX]
  TextBox txtmin{*this, "txtmin", "0"};    // where the counter starts, and starts again
  TextBox txtMax{*this, "txtMax", "999"};  // the last value that is sent
  TextBox txtStep{*this, "txtStep", "1"};
  CheckBox chkStopCounter{*this, "chkStopCounter", "Stop at maximum"};
  CheckBox chkmulti{*this, "chkmulti", "multi macro"};
  Label lblCounter{*this, "lblCounter", "0"};
};

}  // namespace quarlin
