// SPDX-License-Identifier: GPL-3.0-or-later
// The controls that shape the link's own work.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct LinkControls : ControlGroup {
  using ControlGroup::ControlGroup;
  CheckBox chkRTS{*this, "chkRTS", "RTS/CTS flow"};        // taken at the next Connect
  CheckBox ChkRtsTx{*this, "ChkRtsTx", "Rts Tx"};          // RTS raised around each write
  CheckBox chkTerminal{*this, "chkTerminal", "Terminal"};  // each character is a write of its own
  TextBox txtcharrit{*this, "txtcharrit", "0"};            // pause between characters, ms
  CheckBox chkLogOnly{*this, "chkLogOnly", "Rx only"};
  TextBox txtterm{*this, "txtterm", "010"};  // code of the terminator's last character
  Label lblRxms{*this, "lblRxms", "0"};      // mean interval between answers, ms
};

}  // namespace quarlin
