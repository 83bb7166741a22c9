// SPDX-License-Identifier: GPL-3.0-or-later
// The controls that shape the link's own work.
#pragma once

#include <optional>

#include "controls/controls.h"
#include "link/serial_settings.h"

namespace quarlin {

struct LinkControls : ControlGroup {
  explicit LinkControls(EventLoop& loop);

  CheckBox chkRTS{*this, "chkRTS", "RTS/CTS flow"};        // taken at the next Connect
  CheckBox ChkRtsTx{*this, "ChkRtsTx", "Rts Tx"};          // RTS raised around each write
  CheckBox chkTerminal{*this, "chkTerminal", "Terminal"};  // each character is a write of its own
  TextBox txtcharrit{*this, "txtcharrit", "0"};            // pause between characters, ms
  CheckBox chkLogOnly{*this, "chkLogOnly", "Rx only"};
  TextBox txtterm{*this, "txtterm", "010"};  // code of the terminator's last character
  Label lblRxms{*this, "lblRxms", "0"};      // mean interval between answers, ms

  // What holds back whom, taken at the next Connect. chkRTS says the same as far as it can: it is checked
  // with "RTS/CTS" alone, and whoever sets one of the two moves the other.
  ComboBox cboFlow{*this, "cboFlow", {"none", "RTS/CTS", "XON/XOFF"}, "none"};

  // The choice of cboFlow; nothing for a text that is none.
  std::optional<FlowControl> Flow() const;

  Hook<void()> FlowChanged;

 private:
  void FollowBox();
  void FollowChoice();
};

}  // namespace quarlin
