// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of a request/answer run. The cycle sends by them, the receive loop and the error reports
// read them, so they stand below all three.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct RunControls : ControlGroup {
  using ControlGroup::ControlGroup;
  CommandButton Command1{*this, "Command1", "&Start"};   // Start / Stop of the cycle
  ScrollBar HScroll1{*this, "HScroll1", 0, 32767, 500};  // pause between two sends, ms
  TextBox txtInterval{*this, "txtInterval", "500"};      // the same as a number
  CheckBox Check1{*this, "Check1", "Wait Answer"};
  TextBox txtAnswerTime{*this, "txtAnswerTime", "0"};  // ms; 0 waits for ever
  CheckBox chkTimeout{*this, "chkTimeout", "Timeout Stop"};
  TextBox txtTimeout{*this, "txtTimeout", "3"};  // time-outs in a row that stop the cycle
  CheckBox chkRequest{*this, "chkRequest", "Send on request"};
  CheckBox Check2{*this, "Check2", "Number of Request"};
  TextBox Text1{*this, "Text1", "100"};  // requests left
  CheckBox chkhhmmss{*this, "chkhhmmss", "hh:mm:ss"};

  bool WaitsForAnswer() const { return Check1.Checked(); }

  // The box is off limits while a cycle runs, and only then does it count.
  bool CountsRequests() const { return Check2.Checked() && !Check2.Enabled(); }
};

}  // namespace quarlin
