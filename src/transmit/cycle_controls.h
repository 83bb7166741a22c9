// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the transmit cycle: what is sent.
#pragma once

#include "controls/controls.h"
#include "controls/timer.h"

namespace quarlin {

struct CycleControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Timer Timer1{*this, "Timer1", 500};  // one send a tick, while the cycle runs
  Timer Timer2{*this, "Timer2", 500};  // the rate display, while connected
  ComboBox CBOSEND{*this, "CBOSEND"};
  CommandButton cmdSend{*this, "cmdSend", "Send"};
  CheckBox chkSequence{*this, "chkSequence", "Sequence"};  // lines of sequence.txt in turn
  Label lblSequence{*this, "lblSequence"};                 // "line 3 of 9"
  ListBox lstSequence{*this, "lstSequence"};  // those lines; the chosen one is the first of the next run
  CheckBox ChkCounter{*this, "ChkCounter", "Add [COUNTER]"};
};

}  // namespace quarlin
