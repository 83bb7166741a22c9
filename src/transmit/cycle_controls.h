// The controls of the transmit cycle: what is sent and how it is framed.
#pragma once

#include "controls/controls.h"
#include "controls/timer.h"

namespace quarlin {

enum class TxEnd : std::size_t { Cr, CrLf, Manual };

struct CycleControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Timer Timer1{*this, "Timer1", 500};  // one send a tick, while the cycle runs
  Timer Timer2{*this, "Timer2", 500};  // the rate display, while connected
  ComboBox CBOSEND{*this, "CBOSEND"};
  CommandButton cmdSend{*this, "cmdSend", "Send"};
  CheckBox chkSequence{*this, "chkSequence", "Sequence"};  // lines of sequence.txt in turn
  CheckBox ChkCounter{*this, "ChkCounter", "Add [COUNTER]"};
  Frame Frame3{*this, "Frame3", "Tx Terminator"};
  OptionArray<3> Option3{*this, "Option3", {"CR", "CRLF", "Manual"}, 1};
  ComboBox Combo2{*this, "Combo2", {}, "000"};  // code of the manual terminator
  CheckBox chkInit{*this, "chkInit", "Initial string"};
  ComboBox Combo4{*this, "Combo4", {}, "000"};  // code of the initial character; 000 for txtinitstr
  TextBox txtinitstr{*this, "txtinitstr"};
  CheckBox ChkCrLfAppTx{*this, "ChkCrLfAppTx", "Append Row Tx"};
};

}  // namespace quarlin
