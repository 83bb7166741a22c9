// SPDX-License-Identifier: GPL-3.0-or-later
// Everything between a text that is to be sent and the wire, in virtual time, with a scripted port: the rig
// of what sends and of what waits for answers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/files.h"
#include "controls/status_note.h"
#include "exchange/sender.h"
#include "support/scripted_device.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {

class SenderRig : public testing::Test {
 protected:
  SenderRig() {
    sender.Hooks.leaving = [this] { ++lampFlashes; };
    sender.Frame.ComputeTxTerminator();
    displayControls.chkLog.SetChecked(true);
    displayControls.txtric.OnAppend = [this](std::string_view text, Color color) {
      shown.emplace_back(text);
      colorsShown.push_back(color);
    };
    link.CommOpen("COM1", "9600,n,8,1");
  }

  void Terminator(std::size_t option) { framing.Option3[option].SetValue(true); }
  std::string Log() {
    logs.Flush();
    return ReadWholeFile(folder / "LOG.TXT").value_or("");
  }
  std::vector<std::string> Notes() const {
    std::vector<std::string> notes;
    for (const StatusMessage& message : status.Messages()) notes.push_back(message.text);
    return notes;
  }

  TempFolder folder;
  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& port = ports.AddPort("COM1");
  LinkControls linkControls{loop};
  MacroControls macro{loop};
  RunControls run{loop};
  FramingControls framing{loop};
  Counters counters{loop};
  StatusControls statusControls{loop};
  DisplayControls displayControls{loop};
  StatusNote status{loop, statusControls};
  Link link{loop, ports, linkControls};
  Expander expander{macro, [] { return true; }, [] { return 0.5; }};
  TrafficLogs logs{loop, displayControls, ProgramFolder(folder.Path()), [](std::string_view) {}};
  Traffic traffic{loop, displayControls, logs};
  RunRecord record{loop.Clocks()};
  Exchange exchange{loop, run, record};
  Sender sender{{link, expander, exchange, traffic, run, framing, counters}};

  int lampFlashes = 0;
  std::vector<std::string> shown;
  std::vector<Color> colorsShown;
};

}  // namespace quarlin
