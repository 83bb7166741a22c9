// SPDX-License-Identifier: GPL-3.0-or-later
// The controls that say what goes out around a text.
#pragma once

#include "controls/controls.h"

namespace quarlin {

enum class TxEnd : std::size_t { Cr, CrLf, Manual };

struct FramingControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Frame Frame3{*this, "Frame3", "Tx Terminator"};
  OptionArray<3> Option3{*this, "Option3", {"CR", "CRLF", "Manual"}, 1};
  ComboBox Combo2{*this, "Combo2", {}, "000"};  // code of the manual terminator
  CheckBox chkInit{*this, "chkInit", "Initial string"};
  ComboBox Combo4{*this, "Combo4", {}, "000"};  // code of the initial character; 000 for txtinitstr
  TextBox txtinitstr{*this, "txtinitstr"};
  CheckBox ChkCrLfAppTx{*this, "ChkCrLfAppTx", "Append Row Tx"};
};

}  // namespace quarlin
