// SPDX-License-Identifier: GPL-3.0-or-later
// The delay of USB adapters: many keep what they received for some milliseconds, so as to send it on in one
// piece, which no exchange can be faster than. Shows it, and switches the mode in which they hardly wait.
#pragma once

#include <optional>
#include <string>

#include "base/hook.h"
#include "connect/connection_controls.h"
#include "controls/status_note.h"
#include "link/link.h"

namespace quarlin {

class LowLatency {
 public:
  LowLatency(Link& link, ConnectionControls& controls, StatusNote& status);

  // The delay of a port's adapter in milliseconds; nothing where it is not known.
  Hook<std::optional<int>(const std::string& portName)> delayOf;

  // The link was opened or closed. With chkLowLatency a port that was opened gets the mode; one that has none
  // is told of and nothing else.
  void LinkChanged();

  // A cycle with so many milliseconds between two strings starts: says so where the adapter is slower.
  void CycleStarts(int interval);

 private:
  bool SerialIsOpen() const { return link_.CommIsOpen() && !link_.State.CommNetMode; }
  void chkLowLatency_Click();
  bool Switch();
  void ShowDelay();

  Link& link_;
  ConnectionControls& controls_;
  StatusNote& status_;
  std::optional<int> delay_;  // of the open port
};

}  // namespace quarlin
