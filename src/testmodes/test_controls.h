// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the error reports.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct TestControls : ControlGroup {
  using ControlGroup::ControlGroup;
  CheckBox chkStop{*this, "chkStop", "Stop on error"};
  CommandButton cmdErr{*this, "cmdErr", "Open"};  // shows and hides the error list
  CommandButton cmdEditDialog{*this, "cmdEditDialog", "Edit Dialog.txt"};
  CommandButton cmdReport{*this, "cmdReport", "Report"};
};

}  // namespace quarlin
