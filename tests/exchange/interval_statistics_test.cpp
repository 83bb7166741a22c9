// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/interval_statistics.h"

#include <gtest/gtest.h>

#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

TEST(IntervalStatistics, TheMeanStartsAnewAfterAThousand) {
  VirtualLoop loop;
  LinkControls controls(loop);
  IntervalStatistics statistics(loop, controls);
  const auto answerAfter = [&](Duration time) {
    loop.Pause(loop.Now() + time);
    statistics.Received("1\n");
  };
  statistics.Restart();
  for (int i = 0; i < 1001; ++i) answerAfter(10ms);
  EXPECT_EQ(controls.lblRxms.Caption(), "10");
  EXPECT_EQ(statistics.State.RxIntervalCount, 0);
  answerAfter(30ms);
  EXPECT_EQ(controls.lblRxms.Caption(), "30");
}

}  // namespace
}  // namespace quarlin
