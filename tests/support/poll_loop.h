// SPDX-License-Identifier: GPL-3.0-or-later
// A real event loop without a toolkit, for tests on real descriptors: poll(2) and the machine's clock.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "controls/event_loop.h"

namespace quarlin {

class PollLoop : public EventLoop {
 public:
  PollLoop();
  ~PollLoop() override;

  const Clock& Clocks() const override { return clock_; }
  void AlarmSet() override {}
  std::unique_ptr<Watch> WatchReadable(int descriptor, std::function<void()> ready) override;
  std::unique_ptr<Watch> WatchWritable(int descriptor, std::function<void()> ready) override;
  void DoEvents() override;
  bool WaitUntil(const std::function<bool()>& done, Instant deadline) override;
  bool RunUntil(const std::function<bool()>& done, Instant deadline) override;
  void Pause(Instant until) override;
  void Quit(int status) override { exitStatus_ = status; }

  // Serves alarms and descriptors until `done` says so or the time is over; false in the latter case. What
  // is ready is served once also by a machine too busy to come here in time.
  bool Run(const std::function<bool()>& done, Duration atMost);

  // Serves them for a while.
  void Pass(Duration duration) {
    Run([] { return false; }, duration);
  }

  int Wakes() const { return wakes_; }  // handlers of watches called so far
  std::optional<int> ExitStatus() const { return exitStatus_; }

 private:
  struct Watched;
  class PollWatch;

  std::unique_ptr<Watch> Add(int descriptor, short events, std::function<void()> ready);
  void ServeDescriptors(Instant until);

  SystemClock clock_;
  std::vector<std::shared_ptr<Watched>> watched_;
  std::optional<int> exitStatus_;
  int wakes_ = 0;
};

}  // namespace quarlin
