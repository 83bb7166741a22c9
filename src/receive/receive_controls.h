// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of the receive loop: how an answer ends, how it is checked, what becomes of it.
#pragma once

#include "controls/controls.h"
#include "controls/timer.h"
#include "receive/answer_checksum.h"

namespace quarlin {

enum class RxEnd : std::size_t { Cr, CrLf, ManualChar, MinNumChar };

struct ReceiveControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Timer Timer3{*this, "Timer3", 1};  // the fast receive timer, from start-up
  Timer tmrric{*this, "tmrric", 1};  // the receive loop, while connected
  Frame Frame4{*this, "Frame4", "Rx Terminator"};
  OptionArray<4> Option4{*this, "Option4", {"CR", "CRLF", "Manual Char", "Min Num Char"}, 1};
  ComboBox Combo3{*this, "Combo3", {}, "000"};  // code of Manual Char, count of Min Num Char
  CheckBox chkTimerDiff{*this, "chkTimerDiff", "Time diff"};
  CheckBox ChkCrLfAppRx{*this, "ChkCrLfAppRx", "Append Row Rx"};
  TextBox txtlenrx{*this, "txtlenrx", "0"};  // length that an answer must have; 0 for any
  CheckBox chkSame{*this, "chkSame", "Check if same Rx (set parser text)"};
  ComboBox cboCheckSum{*this, "cboCheckSum", AnswerChecksumNames(), "None"};
  CheckBox chkParser{*this, "chkParser", "Enable Parser"};
  ComboBox cboParser{*this, "cboParser"};
  TextBox txtparser{*this, "txtparser"};
  TextBoxArray<8> txtConv{*this, "txtConv"};  // search strings at the even indexes
  CaptionedArray<CheckBox, 4> chkStopif{
      *this,
      "chkStopif",
      {"Stop if found string", "Stop if found string", "Stop if found string", "Stop if found string"}};
  CheckBox chkConvert{*this, "chkConvert", "Convert characters"};  // by Conversion.txt
  OptionArray<2> optConvert{*this, "optConvert", {"Display only", "Checks, too"}, 0};
  CheckBox chkDialog{*this, "chkDialog", "Dialog.txt"};

  bool ConvertsForChecks() const { return optConvert[1].Value(); }
};

}  // namespace quarlin
