// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/traffic.h"

#include <gtest/gtest.h>

#include "controls/collection.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

class TrafficRig : public testing::Test {
 protected:
  std::string Shown() const {
    std::string text;
    const TextRing& ring = controls_.txtric.Ring();
    for (std::uint64_t n = ring.FirstLine(); n < ring.EndLine(); ++n) text += ring.Line(n).text;
    return text;
  }

  VirtualLoop loop_;
  DisplayControls controls_{loop_};
  TempFolder folder_;
  TrafficLogs logs_{loop_, controls_, ProgramFolder(folder_.Path()), [](std::string_view) {}};
  Traffic traffic_{loop_, controls_, logs_};
};

TEST_F(TrafficRig, AnErrorIsShownInRedAndListedWithItsTime) {
  loop_.SetLocal(std::chrono::local_days(std::chrono::year(2026) / 2 / 3) + std::chrono::seconds(3661));
  traffic_.Append("12.5 kg\r\n", colors::black);
  traffic_.AppendError("TIME OUT (1/3)", "sent: READ");
  traffic_.AppendError("ERROR CHECKSUM", "");
  traffic_.AppendError("ERROR CHECKSUM", "", 17);
  traffic_.AppendError("NOT SENT: gone", "3 of 8 bytes taken", 18);

  EXPECT_EQ(Shown(), "12.5 kg\r\nTIME OUT (1/3)\r\nERROR CHECKSUM\r\nERROR CHECKSUM\r\nNOT SENT: gone\r\n");
  EXPECT_EQ(controls_.txtric.Ring().Line(1).runs.at(0).color, colors::red);
  ASSERT_EQ(controls_.lstError.ListCount(), 4);
  EXPECT_EQ(controls_.lstError.List()[0].text, "TIME OUT (1/3)");
  EXPECT_EQ(controls_.lstError.List()[0].toolTip, "03/02/26 01:01:01 sent: READ");
  EXPECT_EQ(controls_.lstError.List()[1].toolTip, "03/02/26 01:01:01");
  EXPECT_EQ(controls_.lstError.List()[2].toolTip, "03/02/26 01:01:01 No. 17");
  EXPECT_EQ(controls_.lstError.List()[3].toolTip, "03/02/26 01:01:01 No. 18: 3 of 8 bytes taken");
}

TEST_F(TrafficRig, TheErrorListKeepsTheLastHundred) {
  for (int i = 1; i <= 103; ++i) traffic_.AppendError("error " + std::to_string(i), "");
  ASSERT_EQ(controls_.lstError.ListCount(), 100);
  EXPECT_EQ(controls_.lstError.List().front().text, "error 4");
  EXPECT_EQ(controls_.lstError.List().back().text, "error 103");
}

TEST_F(TrafficRig, TheDisplayTellsTheViewAndThePrinterWhatIsNew) {
  ControlCollection window;
  window.Add(controls_);
  std::string printed;
  controls_.txtric.OnAppend = [&](std::string_view text, Color color) {
    printed += std::string(text) + "/" + std::to_string(color) + " ";
  };

  traffic_.Append("", colors::black);
  EXPECT_TRUE(window.Changes().Take().empty());
  traffic_.Append("up", colors::blue);
  EXPECT_EQ(window.Changes().Take(), std::vector<Control*>{&controls_.txtric});
  EXPECT_EQ(printed, "up/16711680 ");
  controls_.txtric.Clear();
  EXPECT_EQ(window.Changes().Take(), std::vector<Control*>{&controls_.txtric});
  EXPECT_EQ(Shown(), "");
}

}  // namespace
}  // namespace quarlin
