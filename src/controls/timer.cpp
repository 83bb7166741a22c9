// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/timer.h"

#include <algorithm>

namespace quarlin {

Timer::Timer(ControlGroup& group, std::string_view name, int intervalMilliseconds)
    : Control(group, ControlKind::Timer, name),
      loop_(group.Loop()),
      interval_(std::max(intervalMilliseconds, 0)),
      alarm_(loop_, [this] { Tick(); }) {
  SetEnabled(false);
}

void Timer::SetInterval(int milliseconds) {
  interval_ = std::max(milliseconds, 0);
  lastTick_ = loop_.Now();
  if (alarm_.IsSet()) alarm_.At(NextOnGrid());
}

void Timer::EnabledChanged() {
  lastTick_ = loop_.Now();
  if (Enabled()) {
    alarm_.At(NextOnGrid());
  } else {
    alarm_.Cancel();
  }
}

void Timer::Rest() {
  alarm_.Cancel();
}

void Timer::Wake() {
  WakeAt(loop_.Now());
}

void Timer::WakeAt(Instant instant) {
  if (Enabled() && (!alarm_.IsSet() || *alarm_.When() > instant)) alarm_.At(instant);
}

void Timer::Resume() {
  if (Enabled() && !alarm_.IsSet()) alarm_.At(NextOnGrid());
}

Instant Timer::NextOnGrid() const {
  const Instant now = loop_.Now();
  if (interval_ == 0) return now;
  const Duration interval = std::chrono::milliseconds(interval_);
  const Instant next = lastTick_ + interval;
  if (next >= now) return next;
  return now + (interval - (now - lastTick_) % interval) % interval;
}

void Timer::Tick() {
  if (interval_ > 0) {
    const Duration interval = std::chrono::milliseconds(interval_);
    lastTick_ += (loop_.Now() - lastTick_) / interval * interval;
  }
  alarm_.At(NextOnGrid());  // before the handler, which may rest it, disable it or change the interval
  OnTimer();
}

}  // namespace quarlin
