// SPDX-License-Identifier: GPL-3.0-or-later
// The event loop of the tests: time is a number that walks from alarm to alarm, so a run of ten hours
// takes milliseconds and is exact. Beside the alarms it knows the outside world: calls that happen at an
// instant, also while the program yields.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "controls/event_loop.h"

namespace quarlin {

class VirtualLoop : public EventLoop {
 public:
  VirtualLoop();

  const Clock& Clocks() const override { return clock_; }
  void AlarmSet() override {}
  std::unique_ptr<Watch> WatchReadable(int descriptor, std::function<void()> ready) override;
  std::unique_ptr<Watch> WatchWritable(int descriptor, std::function<void()> ready) override;
  void DoEvents() override;
  bool WaitUntil(const std::function<bool()>& done, Instant deadline) override;
  bool RunUntil(const std::function<bool()>& done, Instant deadline) override;
  void Pause(Instant until) override;
  void Quit(int status) override { exitStatus_ = status; }

  // Lets time pass; alarms and outside calls happen in order of their instants.
  void Pass(Duration duration);

  // Runs what is due at this instant.
  void Settle() { Pass(Duration::zero()); }

  // Calls once whoever waits for reading a real descriptor that can be read. Time stands still.
  void ServeDescriptors();

  // Has the outside world do something after a while: a device that answers, a user who clicks.
  void Outside(Duration after, std::function<void()> call);

  // The date and time of day that the clock shows now.
  void SetLocal(LocalTime local) { clock_.SetLocal(local); }

  int Turns() const { return turns_; }                           // alarms fired so far
  std::optional<int> ExitStatus() const { return exitStatus_; }  // once Quit was called

 private:
  class VirtualClock : public Clock {
   public:
    Instant Now() const override { return now_; }
    LocalTime Local() const override { return localStart_ + now_.time_since_epoch(); }
    void Set(Instant now) { now_ = now; }
    void SetLocal(LocalTime local) { localStart_ = local - now_.time_since_epoch(); }

   private:
    Instant now_{};
    LocalTime localStart_{};
  };

  struct Watched {
    int descriptor;
    std::function<void()> ready;
    bool enabled = true;
  };
  class VirtualWatch;

  bool RunOutside(Instant until);
  void FireDue();

  VirtualClock clock_;
  std::multimap<Instant, std::function<void()>> outside_;
  std::vector<std::shared_ptr<Watched>> watched_;
  std::optional<int> exitStatus_;
  int turns_ = 0;
};

}  // namespace quarlin
