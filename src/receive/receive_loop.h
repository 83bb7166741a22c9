// The receive loop: gathers what arrives, decides when a string is complete, and does everything that is
// to be done with a complete one: checks, parser, counters, and the word to the transmit cycle.
//
// Two timers drive it. Timer3 takes from the link into RxPending; tmrric takes RxPending from there. Both
// rest until something has arrived.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "display/line_builder.h"
#include "display/traffic_logs.h"
#include "exchange/counters.h"
#include "exchange/hand_over.h"
#include "exchange/receive_state.h"
#include "exchange/run_controls.h"
#include "link/link.h"
#include "macro/expander.h"
#include "receive/parser.h"
#include "receive/receive_controls.h"

namespace quarlin {

struct ReceiveParts {
  EventLoop& loop;
  ReceiveControls& controls;
  RunControls& run;
  LinkControls& linkControls;
  Counters& counters;
  Link& link;
  Expander& expander;
  Parser& parser;
  HandOver& handOver;
  ReceiveState& state;
  LineBuilder& display;
  TrafficLogs& logs;
};

// What the loop asks of the rest of the window.
struct ReceiveHooks {
  Hook<void(int kind, std::string_view detail)> signalError;
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<void()> showElapsed;           // of the running cycle
  Hook<void()> endWait;               // WaitingAnswer is over
  Hook<void()> requestsDone;          // the last answer of a limited run has come: stop the cycle
  Hook<void()> mayTransmit;           // the cycle may have been waiting for what just changed
  Hook<void()> counted;               // an answer was accepted: the rate display has work
  Hook<void()> deviceGone;            // disconnect, as soon as this tick has returned
  Hook<void(std::string_view)> note;  // for the status bar
  Hook<bool()> scripting;
  Hook<void(std::string& text)> receiveString;  // the script's, only while scripting
  Hook<void(std::string_view request)> dialog;  // the dialog test
};

class ReceiveLoop {
 public:
  explicit ReceiveLoop(ReceiveParts parts);

  ReceiveHooks Hooks;

  void Timer3_Timer();
  void tmrric_Timer();

  // Recomputes RxTerminator, RxMinChars and txtterm, and throws away what is being assembled.
  void SetRxTerminator();

  // `text` without the terminator at its end, where it has one and is longer than it.
  std::string_view StripRxTerminator(std::string_view text) const;

  // Seconds since the last call.
  float RxIntervalSeconds();

  // Handles everything that has arrived, without waiting for a tick.
  void TakeArrivals();

  // Something was sent or received: the lamps stay bright for a moment.
  void KeepLampsBright();

  // Both lamps to their resting colours, at a disconnect.
  void DarkenLamps();

  // A send is on its way; an answer to an earlier request is no longer late.
  void ForgetLateness() { timedOut_ = false; }

 private:
  bool TakeFromLink();
  void CountIdleTicks();
  void ReportTimeOut();
  bool TakeArrival();
  bool IsComplete(std::size_t arrived);
  std::optional<std::string> CompleteString(std::size_t arrived);
  void Handle(std::string text);
  void StampPause();
  void ShowTimeDifference();
  std::optional<std::string> Accept(const std::string& text);
  bool PassesChecks(const std::string& text);
  void StopIfFound(const std::string& text);
  std::string Parsed(const std::string& text);
  void HandOverAnswer();
  void CheckChecksum(const std::string& text);
  void DimLamps();
  void LampTimeIsUp();

  ReceiveParts parts_;
  Instant lastTick_{};
  Instant lampsUntil_{};
  bool heldBack_ = false;  // the link has more than could be taken
  bool timedOut_ = false;  // the last request was given up; what comes now is late
  Alarm lampAlarm_;
};

}  // namespace quarlin
