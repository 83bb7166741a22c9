// SPDX-License-Identifier: GPL-3.0-or-later
// Alarms: one call each, at an instant of the monotonic clock. The event loop owns the queue and decides
// when it runs; a yield holds it back, so no alarm ever interrupts the code that yields.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/scope_flag.h"

namespace quarlin {

class EventLoop;

// One alarm of the loop, silent until it is set. It fires once for each setting; its end cancels it.
class Alarm {
 public:
  Alarm(EventLoop& loop, std::function<void()> fire);
  ~Alarm();
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  // Sets or moves it. An instant that has passed means: as soon as the running handler has returned.
  void At(Instant instant);
  void Cancel();
  bool IsSet() const { return at_.has_value(); }
  std::optional<Instant> When() const { return at_; }

 private:
  friend class AlarmQueue;

  EventLoop& loop_;
  std::function<void()> fire_;
  std::optional<Instant> at_;
  std::uint64_t order_ = 0;  // equal instants fire in the order in which they were set
};

// The alarms that are set. There are about a dozen in the whole program, so a plain vector is searched.
class AlarmQueue {
 public:
  void Add(Alarm& alarm, Instant at);
  void Remove(Alarm& alarm);
  std::optional<Instant> Earliest() const;

  // Fires the earliest alarm that is due at `now`; false when none is, or while the queue is held.
  bool FireNext(Instant now);

  // For time that stood still: every alarm that was set before `Settings` gave that number goes off so much
  // later. The loop wants to be told, as after a setting.
  std::uint64_t Settings() const { return orders_; }
  void Postpone(std::uint64_t settings, Duration by);

  bool Held() const { return holds_ > 0; }

  // While one of these lives, no alarm fires.
  class Hold {
   public:
    explicit Hold(AlarmQueue& queue) : queue_(queue) { ++queue_.holds_; }
    ~Hold() { --queue_.holds_; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    AlarmQueue& queue_;
  };

  // While one of these lives, alarms fire as if nothing were on the stack: neither a handler nor a Hold from
  // before it counts. For code that waits, and whose callers are ready for whatever happens meanwhile.
  class Lift {
   public:
    explicit Lift(AlarmQueue& queue)
        : queue_(queue), holds_(std::exchange(queue.holds_, 0)), firing_(queue.firing_, false) {}
    ~Lift() { queue_.holds_ += holds_; }
    Lift(const Lift&) = delete;
    Lift& operator=(const Lift&) = delete;

   private:
    AlarmQueue& queue_;
    int holds_;
    ScopeFlag firing_;
  };

 private:
  std::vector<Alarm*>::const_iterator Next() const;

  std::vector<Alarm*> alarms_;
  std::uint64_t orders_ = 0;
  int holds_ = 0;
  bool firing_ = false;  // an alarm's handler is on the stack: none fires inside it
};

}  // namespace quarlin
