// SPDX-License-Identifier: GPL-3.0-or-later
// What a run shows of itself: counters, times and lamps.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct Counters : ControlGroup {
  using ControlGroup::ControlGroup;
  Label lblsend{*this, "lblsend", "0"};          // strings sent
  Label Label7{*this, "Label7", "0"};            // answers accepted
  Label lblerror{*this, "lblerror", "0"};        // errors and "ERR" answers
  Label lblErrStr{*this, "lblErrStr", "0"};      // answers that differed
  Label lblErrorLen{*this, "lblErrorLen", "0"};  // wrong lengths and checksums
  Label lblNotSent{*this, "lblNotSent", "0"};    // texts that did not leave, or not whole
  Label lbllen{*this, "lbllen", "0"};            // length of the last accepted answer
  Label lblllen{*this, "lblllen", "0"};          // length of the last answer or what was there at an error
  Label lblrxpersecond{*this, "lblrxpersecond", "0"};      // seconds between the last two answers
  Label lblSendperSecond{*this, "lblSendperSecond", "0"};  // answers a second
  Label lbltempo{*this, "lbltempo", "00:00:00"};           // how long the cycle runs
  ShapeArray<2> Shape1{*this, "Shape1", {colors::darkRed, colors::darkGreen}};

  Shape& TxLamp() { return Shape1[0]; }
  Shape& RxLamp() { return Shape1[1]; }
};

}  // namespace quarlin
