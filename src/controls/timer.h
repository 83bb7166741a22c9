// SPDX-License-Identifier: GPL-3.0-or-later
// A timer of the product. Its ticks stand on a grid that begins when it is enabled, so a late tick does
// not push the next ones back; ticks that were missed are not made up for.
//
// A handler that finds nothing to do lets the timer rest; whoever then gives it work wakes it. So the
// interval is the longest delay, and an idle timer costs nothing.
#pragma once

#include <string_view>

#include "base/hook.h"
#include "controls/control.h"

namespace quarlin {

class Timer : public Control {
 public:
  Timer(ControlGroup& group, std::string_view name, int intervalMilliseconds);

  Hook<void()> OnTimer;

  int Interval() const { return interval_; }

  // Milliseconds; 0 means that a tick is due as soon as the one before has returned. The grid begins
  // anew, also when the timer rests.
  void SetInterval(int milliseconds);

  // No tick until Wake or Resume. Nothing to do with Enabled, which the user of the timer owns.
  void Rest();

  // The next tick is due at once (Wake), or at the next instant of the grid (Resume). Without effect on
  // a disabled timer; Resume also on one that does not rest.
  void Wake();
  void Resume();

  // Like Wake, but due at an instant: for what only time can change.
  void WakeAt(Instant instant);

 protected:
  void EnabledChanged() override;

 private:
  void Tick();
  Instant NextOnGrid() const;

  EventLoop& loop_;
  int interval_;
  Instant lastTick_{};  // the instant of the grid at which it last ticked, or began
  Alarm alarm_;
};

}  // namespace quarlin
