// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of scripting on the main window.
#pragma once

#include "controls/controls.h"
#include "controls/timer.h"

namespace quarlin {

struct ScriptControls : ControlGroup {
  using ControlGroup::ControlGroup;
  TextBox txtScriptFile{*this, "txtScriptFile"};  // the chosen script, without folder
  CheckBox chkEnableScript{*this, "chkEnableScript", "script"};
  CommandButton cmdEditScript{*this, "cmdEditScript", "Edit"};
  Label lblScriptErrors{*this, "lblScriptErrors", "0"};  // in the hooks, since scripting was switched on
  Timer tmrTask{*this, "tmrTask", 0};
};

}  // namespace quarlin
