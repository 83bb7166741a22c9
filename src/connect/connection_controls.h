// SPDX-License-Identifier: GPL-3.0-or-later
// The controls with which a port is chosen, opened and closed.
#pragma once

#include "controls/controls.h"

namespace quarlin {

struct ConnectionControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Frame Frame1{*this, "Frame1", "Serial Port"};
  ComboBox cboSerial{
      *this, "cboSerial", {"COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8"}, "COM1"};
  ComboBox ComboBaud{*this,
                     "ComboBaud",
                     {"300", "600", "1200", "2400", "4800", "9600", "19200", "38400", "57600", "115200",
                      "230400", "460800", "921600"},
                     "9600"};
  ComboBox ComboWord{*this,
                     "ComboWord",
                     {"n,8,1", "n,8,2", "n,7,1", "n,7,2", "e,8,1", "e,8,2", "e,7,1", "e,7,2", "o,8,1",
                      "o,8,2", "o,7,1", "o,7,2"},
                     "n,8,1"};
  CommandButton cmdsearchcom{*this, "cmdsearchcom", "Search"};
  Frame Frame2{*this, "Frame2", "Network"};
  CheckBox chkUDP{*this, "chkUDP", "UDP"};
  CheckBox chkListen{*this, "chkListen", "Listen"};
  TextBox txtIp{*this, "txtIp", "127.0.0.1"};
  TextBox txtPort{*this, "txtPort", "4001"};
  TextBox txtBind{*this, "txtBind"};                          // the local address to listen at; empty for all
  CheckBox chkReconnect{*this, "chkReconnect", "Reconnect"};  // waits for a link that went away
  Label lblReconnects{*this, "lblReconnects", "0"};
  CheckBox chkLowLatency{*this, "chkLowLatency", "Low latency"};  // of the adapter, while connected
  Label lblLatency{*this, "lblLatency"};                          // "adapter waits 16 ms", of the open port
  Shape shpLink{*this, "shpLink", colors::darkGreen};             // whether data can pass
  CommandButton cmdOpen{*this, "cmdOpen", "Connect"};  // outside both frames: it works while they are off
};

}  // namespace quarlin
