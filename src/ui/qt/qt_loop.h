// SPDX-License-Identifier: GPL-3.0-or-later
// The event loop of the running program, on the toolkit's own, with a window or without one.
//
// All alarms share one timerfd with an absolute deadline: the toolkit's timers round to milliseconds,
// which makes a cycle of 1 ms late. A turn is: one descriptor is served, then every alarm that is due, and
// so on while that descriptor calls in quick succession. A turn ends after a few milliseconds at the latest,
// so that the window gets its own.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "controls/event_loop.h"

class QSocketNotifier;

namespace quarlin {

class QtLoop : public EventLoop {
 public:
  // The toolkit's application object must be there already.
  QtLoop();
  ~QtLoop() override;

  // Runs until Quit; returns its status.
  int Run();

  const Clock& Clocks() const override { return clock_; }
  void AlarmSet() override;
  std::unique_ptr<Watch> WatchReadable(int descriptor, std::function<void()> ready) override;
  std::unique_ptr<Watch> WatchWritable(int descriptor, std::function<void()> ready) override;

  // Nothing happens when the window was served within the last few milliseconds: then nothing can wait
  // there for long, and a yield in every read stays cheap.
  void DoEvents() override;
  bool WaitUntil(const std::function<bool()>& done, Instant deadline) override;
  bool RunUntil(const std::function<bool()>& done, Instant deadline) override;
  void Pause(Instant until) override;
  void Quit(int status) override;

 private:
  struct Watched;
  class NotifierWatch;

  void Turn(Watched* watched);  // null: only the alarms
  void FireDue(Instant end);
  bool CallsAgain(Watched& watched, Instant end);
  void ArmForAlarms();
  void Arm(Instant at);
  void TimerFired();

  SystemClock clock_;
  int timer_;
  std::unique_ptr<QSocketNotifier> timerWatch_;
  std::optional<Instant> armed_;  // when the timerfd will fire
  Instant windowServed_{};
  int depth_ = 0;  // turns on the stack
};

}  // namespace quarlin
