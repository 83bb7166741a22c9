// SPDX-License-Identifier: GPL-3.0-or-later
// The status bar: in words what lamps and colours tell.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct StatusControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Label lblStatusLink{*this, "lblStatusLink", "not connected"};  // link and settings
  Label lblStatusCycle{*this, "lblStatusCycle"};                 // what the cycle waits for
  Label lblStatusNote{*this, "lblStatusNote"};  // the last thing worth saying: link errors, log trouble
};

}  // namespace quarlin
