// SPDX-License-Identifier: GPL-3.0-or-later
// The one seam through which the program knows time and waits: real under the window toolkit, virtual in
// tests. Everything runs on its thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "base/clock.h"
#include "controls/alarms.h"

namespace quarlin {

// A watched descriptor. Its end stops the watching.
class Watch {
 public:
  virtual ~Watch() = default;
  virtual void SetEnabled(bool enabled) = 0;
};

class EventLoop {
 public:
  EventLoop();
  virtual ~EventLoop();
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  virtual const Clock& Clocks() const = 0;
  Instant Now() const { return Clocks().Now(); }
  LocalTime Local() const { return Clocks().Local(); }

  AlarmQueue& Alarms() { return alarms_; }

  // Told by an alarm that it was set, so that the loop wakes in time.
  virtual void AlarmSet() = 0;

  // Calls `ready` whenever the descriptor can be read (or written) until the watch ends or is disabled.
  virtual std::unique_ptr<Watch> WatchReadable(int descriptor, std::function<void()> ready) = 0;
  virtual std::unique_ptr<Watch> WatchWritable(int descriptor, std::function<void()> ready) = 0;

  // Serves the window and the descriptors once, never an alarm. Anything that a key, a click or a watch
  // can reach may have changed on return.
  virtual void DoEvents() = 0;

  // Yields as DoEvents does until `done` says so or the instant has passed; false in the latter case.
  virtual bool WaitUntil(const std::function<bool()>& done, Instant deadline) = 0;

  // Waits likewise, but everything goes on meanwhile, alarms too, whatever on the stack holds them back: only
  // a Hold that begins within the wait does. What is due when the instant has passed still happens before it
  // returns, so a wait for no time at all is one look at everything.
  virtual bool RunUntil(const std::function<bool()>& done, Instant deadline) = 0;

  // Blocks until the instant, serving nothing.
  virtual void Pause(Instant until) = 0;

  // Runs `call` as soon as every handler on the stack has returned, in order. Unlike an alarm it belongs
  // to nobody; for ends that must not happen on a deep stack.
  void Post(std::function<void()> call);

  // Ends the loop with the exit status of the program, once the running handler has returned.
  virtual void Quit(int status) = 0;

 private:
  void RunPosted();

  AlarmQueue alarms_;
  std::deque<std::function<void()>> posted_;
  Alarm postedAlarm_;
};

}  // namespace quarlin
