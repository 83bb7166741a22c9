// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/event_loop.h"

namespace quarlin {

EventLoop::EventLoop() : postedAlarm_(*this, [this] { RunPosted(); }) {}

EventLoop::~EventLoop() = default;

void EventLoop::Post(std::function<void()> call) {
  posted_.push_back(std::move(call));
  if (!postedAlarm_.IsSet()) postedAlarm_.At(Now());
}

void EventLoop::RunPosted() {
  const std::function<void()> call = std::move(posted_.front());
  posted_.pop_front();
  if (!posted_.empty()) postedAlarm_.At(Now());
  call();
}

}  // namespace quarlin
