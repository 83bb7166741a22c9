// SPDX-License-Identifier: GPL-3.0-or-later
// Errors of the answer traffic: shown, counted, listed, and the run stopped where the user wants that.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/hook.h"
#include "display/traffic.h"
#include "exchange/counters.h"
#include "exchange/exchange.h"
#include "exchange/run_controls.h"
#include "link/link_controls.h"
#include "testmodes/test_controls.h"

namespace quarlin {

struct ErrorReportParts {
  TestControls& controls;
  RunControls& run;
  Counters& counters;
  LinkControls& link;
  DisplayControls& listing;
  Traffic& traffic;
  Exchange& exchange;
};

struct ErrorReportHooks {
  Hook<void()> stopCycle;  // as a click on Command1
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<std::size_t()> giveUpString;  // throws the string being assembled away; returns its length
};

class ErrorReports {
 public:
  explicit ErrorReports(ErrorReportParts parts);

  ErrorReportHooks Hooks;

  // Reports one error and throws the string being assembled away. The finding goes into the record, its
  // detail also into the tool tip of the list entry. Yields where the run is stopped with a message.
  void SignalError(const Finding& finding);

  // The same by the number that scripts know: 0 time-out, 1 not equal, 2 wrong length, 3 wrong checksum.
  // Another number only counts.
  void SignalError(int kind);

  // Shows or hides the error list.
  void cmdErr_Click();

 private:
  void ShowTimeOut(std::string_view detail, std::uint64_t number);
  void Count();
  std::string CountTimeOut();

  ErrorReportParts parts_;
};

}  // namespace quarlin
