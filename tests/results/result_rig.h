// SPDX-License-Identifier: GPL-3.0-or-later
// A run to report: its record, its counters, its error list and the settings that decide what is checked.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "controls/collection.h"
#include "display/display_controls.h"
#include "exchange/run_controls.h"
#include "receive/receive_controls.h"
#include "results/run_result.h"
#include "support/virtual_loop.h"

namespace quarlin {

class ResultRig : public testing::Test {
 protected:
  ResultRig() {
    loop_.SetLocal(std::chrono::local_days(std::chrono::year(2026) / 2 / 3) + std::chrono::hours(12));
    settings_.Add(run_);
    settings_.Add(receive_);
    facts_.version = "1.0.0";
    facts_.host = "bench-7";
    facts_.link = "/dev/ttyUSB0 9600 n,8,1";
    facts_.how = HowEnded::Completed;
    record_.Begin();
  }

  // A request, 10 ms later its answer, and what was found.
  void Exchange(std::string_view request, std::string_view answer, const std::vector<Finding>& findings) {
    const std::uint64_t number = record_.AddRequest(request);
    loop_.Pass(std::chrono::milliseconds(10));
    if (!answer.empty()) record_.Received(number, answer, loop_.Now());
    for (const Finding& finding : findings) record_.Say(number, finding);
    record_.Close(number);
  }

  void SwitchEveryCheckOn() {
    run_.Check1.SetChecked(true);
    run_.txtAnswerTime.SetText("100");
    receive_.chkSame.SetChecked(true);
    receive_.txtlenrx.SetText("7");
    receive_.cboCheckSum.SetText("Mod8");
    facts_.scripting = true;
    facts_.lineErrors.emplace();
  }

  RunResult Result() {
    return GatherResult({record_, counters_, display_.lstError, settings_, loop_.Clocks()}, facts_);
  }

  VirtualLoop loop_;
  RunRecord record_{loop_.Clocks()};
  Counters counters_{loop_};
  DisplayControls display_{loop_};
  RunControls run_{loop_};
  ReceiveControls receive_{loop_};
  ControlCollection settings_;
  RunFacts facts_;
};

// Every byte there is.
inline std::string AllBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  return bytes;
}

}  // namespace quarlin
