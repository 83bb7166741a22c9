// The transmit cycle: one string a tick, for as long as the conditions allow.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/hook.h"
#include "display/line_builder.h"
#include "display/traffic_logs.h"
#include "exchange/counters.h"
#include "exchange/hand_over.h"
#include "exchange/interval_statistics.h"
#include "exchange/run_controls.h"
#include "link/link.h"
#include "macro/expander.h"
#include "transmit/cycle_controls.h"
#include "transmit/line_files.h"

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
  HandOver& handOver;
  IntervalStatistics& intervals;
  LineBuilder& display;
  TrafficLogs& logs;
  SequenceFile& sequence;
};

// How a run came to its end.
enum class RunEnd { Stopped, Completed };

struct CycleHooks {
  Hook<void(std::string_view message, std::string_view title)> stopWithMessage;
  Hook<void(RunEnd end)> stopped;
  Hook<void()> takeArrivals;              // has the receive loop handle what has arrived
  Hook<void()> reportTimeOut;             // AnswerTimedOut was set: has the receive loop look at it
  Hook<void()> sent;                      // something went out: the lamps are bright
  Hook<void(std::string_view)> showWait;  // what the cycle waits for, in words; empty for nothing
};

class Cycle {
 public:
  explicit Cycle(CycleParts parts);

  CycleHooks Hooks;

  void Command1_Click();
  void Timer1_Timer();
  void Timer2_Timer();

  // The Send button: the command once, framed as the cycle frames it, outside any run. Yields.
  void cmdSend_Click();

  // Nothing happens when no cycle runs.
  void Stop(RunEnd end = RunEnd::Stopped);

  // Something changed that a send may have been held back by.
  void MaySendAgain() { parts_.controls.Timer1.Resume(); }

  // The wait for the answer is over, with or without one.
  void EndWait();

  // Brings lbltempo up to date.
  void ShowElapsed();

  // What is appended to every string that is sent.
  const std::string& TxTerminator() const { return txTerminator_; }
  void ComputeTxTerminator();

 private:
  void Start();
  bool MaySend() const;
  void SendNext();
  bool CountRequest();
  std::string ExpandNext();
  std::string Framed(const std::string& expanded) const;
  std::string Prefix() const;
  void Transmit(std::string text, std::function<void()> counted);
  void StartWait();
  void AnswerTimeIsUp();
  void TellEachSecond();
  void SetRunning(bool running);
  void IntervalChanged();
  void IntervalTyped();

  CycleParts parts_;
  std::string txTerminator_;
  Instant started_{};
  std::int64_t shownSecond_ = 0;
  Instant waitingSince_{};
  std::uint32_t run_ = 0;  // counts starts and stops, so that a send can see that its run ended meanwhile
  std::int32_t lastRateSample_ = 0;
  Alarm answerAlarm_;
  Alarm secondAlarm_;
};

}  // namespace quarlin
