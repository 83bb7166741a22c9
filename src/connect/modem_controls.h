// SPDX-License-Identifier: GPL-3.0-or-later
// The lamps of the modem input lines and the boxes of the output lines.
#pragma once

#include "controls/controls.h"
#include "controls/timer.h"

namespace quarlin {

struct ModemControls : ControlGroup {
  explicit ModemControls(EventLoop& loop) : ControlGroup(loop) {
    chkLine[1].SetChecked(true);  // most instruments want both
    chkLine[2].SetChecked(true);
  }

  Timer tmrLine{*this, "tmrLine", 10};
  ShapeArray<4> shpLine{
      *this, "shpLine", {colors::darkGreen, colors::darkGreen, colors::darkGreen, colors::darkGreen}};
  CaptionedArray<CheckBox, 3> chkLine{*this, "chkLine", {"break", "DTR", "RTS"}};
};

}  // namespace quarlin
