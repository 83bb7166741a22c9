// SPDX-License-Identifier: GPL-3.0-or-later
// The transmit cycle: one string a tick, for as long as the conditions allow.
#pragma once

#include <cstdint>
#include <string>

#include "base/hook.h"
#include "controls/status_note.h"
#include "exchange/counters.h"
#include "exchange/exchange.h"
#include "exchange/interval_statistics.h"
#include "exchange/run_controls.h"
#include "exchange/sender.h"
#include "link/link.h"
#include "macro/expander.h"
#include "transmit/cycle_controls.h"
#include "transmit/sequence.h"

namespace quarlin {

// The parts of the window that the cycle works with.
struct CycleParts {
  EventLoop& loop;
  CycleControls& controls;
  RunControls& run;
  MacroControls& macro;
  Counters& counters;
  Link& link;
  Expander& expander;
  Exchange& exchange;
  IntervalStatistics& intervals;
  Sender& sender;
  Traffic& traffic;
  Sequence& sequence;
  StatusNote& status;
};

// How a run came to its end.
enum class RunEnd { Stopped, Completed };

struct CycleHooks {
  Hook<std::string()> objection;  // why no run may begin now; empty for nothing
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<void(std::string_view command)> commandUsed;  // it was sent, or a run began with it
  Hook<void()> starting;                             // what came before the run is none of its answers
  Hook<void(RunEnd end)> stopped;
};

class Cycle {
 public:
  explicit Cycle(CycleParts parts);

  CycleHooks Hooks;

  void Command1_Click();
  void Timer1_Timer();
  void Timer2_Timer();

  // The Send button: what stands in the command box, once, framed as the cycle frames it. Yields.
  void cmdSend_Click();

  // Nothing happens when no cycle runs.
  void Stop(RunEnd end = RunEnd::Stopped);

  // Something changed that a send may have been held back by.
  void MaySendAgain() { parts_.controls.Timer1.Resume(); }

  // What a run sends, and how often, as things are set: "READ every 500 ms", "sequence.txt without a pause".
  std::string Description() const;

  // Brings lbltempo up to date.
  void ShowElapsed();

 private:
  void Start();
  void ClearCounters();
  bool MaySend() const;
  void SendNext();
  void PauseAfterFailure(const SendOutcome& outcome);
  bool RequestIsLeft();
  bool SendsSequence() const;
  std::string NextCommand();
  std::string Counted(std::string command) const;
  void TellEachSecond();
  std::string WhatIsWaitedFor() const;
  void SetRunning(bool running);
  void IntervalChanged();
  void IntervalTyped();

  CycleParts parts_;
  Instant started_{};
  std::int64_t shownSecond_ = 0;
  std::int32_t lastRateSample_ = 0;
  Alarm secondAlarm_;
};

}  // namespace quarlin
