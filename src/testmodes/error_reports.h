// Errors of the answer traffic: shown, counted, listed, and the run stopped where the user wants that.
#pragma once

#include <cstddef>
#include <string_view>

#include "base/hook.h"
#include "display/line_builder.h"
#include "exchange/counters.h"
#include "exchange/hand_over.h"
#include "exchange/receive_state.h"
#include "exchange/run_controls.h"
#include "link/link_controls.h"
#include "testmodes/test_controls.h"

namespace quarlin {

enum class ErrorKind : int { TimeOut, NotEqual, Length, Checksum };

struct ErrorReportParts {
  TestControls& controls;
  RunControls& run;
  Counters& counters;
  LinkControls& link;
  DisplayControls& listing;
  LineBuilder& display;
  HandOver& handOver;
  ReceiveState& receive;
};

struct ErrorReportHooks {
  Hook<void()> stopCycle;  // as a click on Command1
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<void()> endWait;  // for the answer
};

class ErrorReports {
 public:
  explicit ErrorReports(ErrorReportParts parts);

  ErrorReportHooks Hooks;

  // Reports one error and throws the string being assembled away. Kinds 0 to 3 as in ErrorKind; another
  // kind only counts. `detail` goes into the tool tip of the list entry. Yields where the run is stopped
  // with a message.
  void SignalError(int kind, std::string_view detail = "");

  // Shows or hides the error list.
  void cmdErr_Click();

 private:
  void SignalTimeOut(std::string_view detail);
  std::string CountTimeOut();

  ErrorReportParts parts_;
};

// The report's text, with CR LF line ends. `faults` sums up what the dialog test made on purpose; its section
// is left out when that is empty.
std::string ReportText(const Counters& counters, const ListBox& errors, std::string_view faults);

}  // namespace quarlin
