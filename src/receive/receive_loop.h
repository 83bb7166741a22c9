// SPDX-License-Identifier: GPL-3.0-or-later
// The receive loop: gathers what arrives, and does everything that is to be done with a complete string:
// checks, parser, counters, and the word to the exchange that waits for it.
//
// Two timers drive it. Timer3 takes from the link into RxPending; tmrric takes RxPending from there. Both
// rest until something has arrived.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "controls/status_note.h"
#include "display/traffic.h"
#include "exchange/counters.h"
#include "exchange/exchange.h"
#include "exchange/run_controls.h"
#include "link/link.h"
#include "macro/expander.h"
#include "receive/assembler.h"
#include "receive/character_conversion.h"
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
  CharacterConversion& conversion;
  Exchange& exchange;
  Traffic& traffic;
  StatusNote& status;
};

// What the loop asks of the rest of the window.
struct ReceiveHooks {
  Hook<void(const Finding& finding)> signalError;
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<void()> showElapsed;   // of the running cycle
  Hook<void()> requestsDone;  // the last answer of a limited run has come: stop the cycle
  Hook<void()> mayTransmit;   // the cycle may have been waiting for what just changed
  Hook<void()> counted;       // an answer was accepted: the rate display has work
  Hook<void()> deviceGone;    // disconnect, as soon as this tick has returned
  Hook<bool()> scripting;
  Hook<void(const std::string& text)> completed;  // a string is complete, and will be handled
  Hook<void(std::string& text)> receiveString;    // the script's, only while scripting
  Hook<void(std::string_view request)> dialog;    // the dialog test
};

// The loop's own times and ticks.
struct ReceiveState {
  std::int16_t RxIdleTicks = 0;        // ticks since data last arrived
  double LastStampTime = 0;            // seconds since midnight of the last date and time line
  double LastRxTime = 0;               // seconds since midnight of the last "TIME :" line
  std::uint32_t LastCompleteTick = 0;  // millisecond tick of the last complete string
};

class ReceiveLoop {
 public:
  explicit ReceiveLoop(ReceiveParts parts);

  ReceiveHooks Hooks;

  void Timer3_Timer();
  void tmrric_Timer();

  // Recomputes RxTerminator, RxMinChars and txtterm, and throws away what is being assembled.
  void SetRxTerminator();

  // Seconds since the last call.
  float RxIntervalSeconds();

  // Handles everything that has arrived, without waiting for a tick.
  void TakeArrivals();

  // An error was signalled: the string being assembled is given up. Returns its length.
  std::size_t GiveUpString();

  // What came before counts no more: at an opening of the link.
  void ForgetArrivals();

  // What comes from here on is another sender's: half a string of the one before is dropped, and said.
  void BeginSender();

  // A write waits for the driver: what arrives meanwhile is shown and logged, and handled behind the write.
  void ShowArrivals();

  // The link went away: half a string is not the beginning of the next one's answer.
  void ForgetBeginning();

  // A run begins: half a string is nobody's answer, nor is its rest that may be on its way.
  void DropBeginning();

  // Something was sent or received: the lamps stay bright for a moment.
  void KeepLampsBright();

  // Both lamps to their resting colours, at a disconnect.
  void DarkenLamps();

 private:
  bool TakeFromLink();
  void CountIdleTicks();
  void ReportTimeOut();
  void ShowPending();
  Assembly TakeArrival();
  void StampPause();
  void HandleArrival(Assembly assembly);
  void ConvertForChecks(std::string& text);
  void AnswerAsDialog(const std::string& text);
  void CountErr(bool complete);
  void AwaitQuiet();
  void LineMayBeQuiet();
  void EndErr();
  Duration Quiet() const;
  void Handle(std::string text);
  void ShowTimeDifference();
  std::optional<std::string> Accept(const std::string& text);
  bool PassesChecks(const std::string& text);
  void StopIfFound(const std::string& text);
  std::string Parsed(const std::string& text);
  void CountRequest();
  void CheckChecksum(const std::string& text);
  void DimLamps();
  void LampTimeIsUp();

  ReceiveParts parts_;
  Assembler assembler_;
  ReceiveState state_;
  Instant lastTick_{};
  Instant lampsUntil_{};
  std::size_t shownPending_ = 0;  // bytes of RxPending
  bool heldBack_ = false;         // the link has more than could be taken
  bool releasesHeld_ = false;     // "Rx only" was cleared: what it held back came before any time-out
  Alarm lampAlarm_;
  Alarm quietAlarm_;  // while the rest of a string is thrown away
};

}  // namespace quarlin
