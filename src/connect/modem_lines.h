// SPDX-License-Identifier: GPL-3.0-or-later
// The modem lines while the link is open: lamps for the inputs, boxes for the outputs, looked at every
// 10 ms.
#pragma once

#include <string_view>

#include "connect/modem_controls.h"
#include "link/link.h"

namespace quarlin {

class ModemLines {
 public:
  ModemLines(Link& link, ModemControls& controls);

  // One look: paints the four lamps, then sets break, DTR and RTS as their boxes say. RTS follows its box
  // also while "Rts Tx" is on. A line is only set where it is not known to be so already; a link without
  // modem lines is left alone until the next opening.
  void tmrLine_Timer();

  // The link was opened or closed: looks at once, or darkens the lamps.
  void LinkChanged();

 private:
  void ShowInputs();
  void SetOutputs();
  void ShowAvailable(bool available);

  Link& link_;
  ModemControls& controls_;
};

}  // namespace quarlin
