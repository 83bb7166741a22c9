// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/low_latency.h"

#include <gtest/gtest.h>

#include "support/scripted_device.h"

namespace quarlin {
namespace {

class LowLatencyRig : public testing::Test {
 protected:
  LowLatencyRig() {
    latency.delayOf = [this](const std::string&) { return port.LowLatency() == true ? 1 : delay; };
  }
  void Open() {
    link.CommOpen("COM1", "9600,n,8,1");
    latency.LinkChanged();
  }
  void Close() {
    link.CommClose();
    latency.LinkChanged();
  }
  std::string Shown() { return controls.lblLatency.Caption(); }
  std::string TakeNote() {
    std::string text = status.lblStatusNote.Caption();
    note.Clear();
    return text;
  }

  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& port = ports.AddPort("COM1");
  LinkControls linkControls{loop};
  ConnectionControls controls{loop};
  StatusControls status{loop};
  StatusNote note{loop, status};
  Link link{loop, ports, linkControls};
  LowLatency latency{link, controls, note};
  std::optional<int> delay = 16;
};

TEST_F(LowLatencyRig, TheModeFollowsTheBoxAndIsPutBackAtTheEnd) {
  port.HasLowLatencyMode();
  Open();
  EXPECT_EQ(port.LowLatency(), false) << "not asked for";
  EXPECT_EQ(Shown(), "adapter waits 16 ms");
  controls.chkLowLatency.SetChecked(true);
  EXPECT_EQ(port.LowLatency(), true);
  EXPECT_EQ(Shown(), "adapter waits 1 ms");
  controls.chkLowLatency.SetChecked(false);
  EXPECT_EQ(port.LowLatency(), false);
  controls.chkLowLatency.SetChecked(true);
  Close();
  EXPECT_EQ(port.LowLatency(), false);
  EXPECT_EQ(Shown(), "");
  controls.chkLowLatency.SetChecked(false);
  controls.chkLowLatency.SetChecked(true);
  EXPECT_EQ(port.LowLatency(), false) << "nothing is open";
  Open();
  EXPECT_EQ(port.LowLatency(), true);
}

TEST_F(LowLatencyRig, ADriverWithoutTheModeIsToldOfAndNothingFails) {
  delay.reset();
  controls.chkLowLatency.SetChecked(true);
  Open();
  EXPECT_EQ(TakeNote(), "COM1 has no low-latency mode");
  EXPECT_EQ(Shown(), "");
  EXPECT_TRUE(link.CommIsOpen());
  EXPECT_EQ(link.State.CommLastError, 0);
}

TEST_F(LowLatencyRig, ACycleThatIsFasterThanTheAdapterIsTold) {
  port.HasLowLatencyMode();
  Open();
  latency.CycleStarts(16);
  EXPECT_EQ(TakeNote(), "");
  latency.CycleStarts(15);
  EXPECT_EQ(TakeNote(),
            "this adapter waits 16 ms: at most 62 exchanges a second; \"Low latency\" shortens that");
  controls.chkLowLatency.SetChecked(true);
  EXPECT_EQ(TakeNote(), "this adapter waits 1 ms: at most 1000 exchanges a second");
  latency.CycleStarts(1);
  Close();
  latency.CycleStarts(0);
  EXPECT_EQ(TakeNote(), "");
}

}  // namespace
}  // namespace quarlin
