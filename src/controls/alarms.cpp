// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/alarms.h"

#include <algorithm>
#include <tuple>

#include "controls/event_loop.h"

namespace quarlin {

Alarm::Alarm(EventLoop& loop, std::function<void()> fire) : loop_(loop), fire_(std::move(fire)) {}

Alarm::~Alarm() {
  Cancel();
}

void Alarm::At(Instant instant) {
  loop_.Alarms().Add(*this, instant);
  loop_.AlarmSet();
}

void Alarm::Cancel() {
  if (at_) loop_.Alarms().Remove(*this);
}

void AlarmQueue::Add(Alarm& alarm, Instant at) {
  if (!alarm.at_) alarms_.push_back(&alarm);
  alarm.at_ = at;
  alarm.order_ = ++orders_;
}

void AlarmQueue::Remove(Alarm& alarm) {
  alarms_.erase(std::find(alarms_.begin(), alarms_.end(), &alarm));
  alarm.at_.reset();
}

std::vector<Alarm*>::const_iterator AlarmQueue::Next() const {
  return std::min_element(alarms_.begin(), alarms_.end(), [](const Alarm* left, const Alarm* right) {
    return std::tie(*left->at_, left->order_) < std::tie(*right->at_, right->order_);
  });
}

std::optional<Instant> AlarmQueue::Earliest() const {
  const auto next = Next();
  return next == alarms_.end() ? std::nullopt : (*next)->at_;
}

void AlarmQueue::Postpone(std::uint64_t settings, Duration by) {
  for (Alarm* alarm : alarms_) {
    if (alarm->order_ <= settings) *alarm->at_ += by;
  }
}

bool AlarmQueue::FireNext(Instant now) {
  if (holds_ > 0 || firing_) return false;
  const auto next = Next();
  if (next == alarms_.end() || *(*next)->at_ > now) return false;
  Alarm& alarm = **next;
  Remove(alarm);  // taken out first: firing may set this one again, or others
  const std::function<void()> fire = alarm.fire_;  // a copy, since firing may end the alarm's owner
  const ScopeFlag firing(firing_);
  fire();
  return true;
}

}  // namespace quarlin
