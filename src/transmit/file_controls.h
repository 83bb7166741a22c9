// SPDX-License-Identifier: GPL-3.0-or-later
// The controls of a file that is sent: how, and how far it has come.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct FileControls : ControlGroup {
  explicit FileControls(EventLoop& loop) : ControlGroup(loop) { fraFile.SetVisible(false); }

  Frame fraFile{*this, "fraFile", "Send file"};  // all of them; in sight while there is a file to be sent
  Label lblFile{*this, "lblFile"};               // its name and size
  CheckBox chkFileLines{*this, "chkFileLines", "Line by line"};  // as commands; else byte for byte
  CheckBox chkFileWait{*this, "chkFileWait", "Wait for each answer"};
  TextBox txtLinePause{*this, "txtLinePause", "0"};  // ms between two lines, also of a paste
  CommandButton cmdFile{*this, "cmdFile", "Send file"};
  CommandButton cmdFileEnd{*this, "cmdFileEnd", "Cancel"};
  Label lblFileSent{*this, "lblFileSent"};  // how much, how fast, how long still
};

}  // namespace quarlin
