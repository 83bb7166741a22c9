// SPDX-License-Identifier: GPL-3.0-or-later
// The mean time from a request to its answer, over the last thousand or fewer.
#pragma once

#include <cstdint>
#include <string_view>

#include "controls/event_loop.h"
#include "link/link_controls.h"

namespace quarlin {

struct IntervalState {
  double RxStampTime = 0;    // seconds since midnight; from here the interval to the answer is counted
  double RxIntervalSum = 0;  // seconds
  std::int32_t RxIntervalCount = 0;
};

class IntervalStatistics {
 public:
  IntervalStatistics(EventLoop& loop, LinkControls& controls) : loop_(loop), controls_(controls) {}

  IntervalState State;

  // A string was sent: its answer's interval begins.
  void Transmitted() { State.RxStampTime = Midnight(); }

  // This has arrived. With the terminator of txtterm in it an interval ends and the next begins, and lblRxms
  // shows the mean in ms; after 1000 it starts anew. Nothing is measured while "Rx only" is checked.
  void Received(std::string_view text);

  // Starts anew now.
  void Restart() { State = {Midnight(), 0, 0}; }

 private:
  double Midnight() const { return SecondsSinceMidnight(loop_.Local()); }

  EventLoop& loop_;
  LinkControls& controls_;
};

}  // namespace quarlin
