// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/virtual_loop.h"

#include <poll.h>

#include <algorithm>

namespace quarlin {
namespace {

// In virtual time a device calls by itself.
class NoWatch : public Watch {
 public:
  void SetEnabled(bool) override {}
};

// A program that is always busy must not stop time: so many turns take it a microsecond.
constexpr int turnsPerMicrosecond = 100;

}  // namespace

class VirtualLoop::VirtualWatch : public Watch {
 public:
  VirtualWatch(VirtualLoop& loop, std::shared_ptr<Watched> watched)
      : loop_(loop), watched_(std::move(watched)) {}
  ~VirtualWatch() override {
    watched_->enabled = false;
    std::erase(loop_.watched_, watched_);
  }
  void SetEnabled(bool enabled) override { watched_->enabled = enabled; }

 private:
  VirtualLoop& loop_;
  std::shared_ptr<Watched> watched_;
};

VirtualLoop::VirtualLoop() {
  using namespace std::chrono;
  clock_.Set(Instant(hours(1)));
  clock_.SetLocal(local_days(year(2026) / 11 / 21) + hours(10));
}

std::unique_ptr<Watch> VirtualLoop::WatchReadable(int descriptor, std::function<void()> ready) {
  watched_.push_back(std::make_shared<Watched>(Watched{descriptor, std::move(ready)}));
  return std::make_unique<VirtualWatch>(*this, watched_.back());
}

std::unique_ptr<Watch> VirtualLoop::WatchWritable(int, std::function<void()>) {
  return std::make_unique<NoWatch>();
}

void VirtualLoop::ServeDescriptors() {
  for (const auto& watched : std::vector(watched_)) {
    pollfd asked{watched->descriptor, POLLIN, 0};
    if (watched->enabled && poll(&asked, 1, 0) > 0) watched->ready();
  }
}

void VirtualLoop::Outside(Duration after, std::function<void()> call) {
  outside_.emplace(Now() + after, std::move(call));
}

bool VirtualLoop::RunOutside(Instant until) {
  if (outside_.empty() || outside_.begin()->first > until) return false;
  const auto call = outside_.extract(outside_.begin());
  clock_.Set(std::max(Now(), call.key()));
  call.mapped()();
  return true;
}

void VirtualLoop::FireDue() {
  for (int turns = 0; Alarms().FireNext(Now()); ++turns) {
    ++turns_;
    if (turns == turnsPerMicrosecond) {
      clock_.Set(Now() + std::chrono::microseconds(1));
      return;
    }
  }
}

void VirtualLoop::Pass(Duration duration) {
  const Instant target = Now() + duration;
  for (;;) {
    while (RunOutside(Now())) FireDue();
    FireDue();
    Instant next = Alarms().Earliest().value_or(target + Duration(1));
    if (!outside_.empty()) next = std::min(next, outside_.begin()->first);
    if (next > target || Now() > target) break;
    clock_.Set(std::max(Now(), next));
  }
  clock_.Set(std::max(Now(), target));
}

void VirtualLoop::DoEvents() {
  const AlarmQueue::Hold hold(Alarms());
  while (RunOutside(Now())) {
  }
}

bool VirtualLoop::WaitUntil(const std::function<bool()>& done, Instant deadline) {
  const AlarmQueue::Hold hold(Alarms());
  while (!done()) {
    if (RunOutside(deadline)) continue;
    clock_.Set(std::max(Now(), deadline));
    return done();
  }
  return true;
}

bool VirtualLoop::RunUntil(const std::function<bool()>& done, Instant deadline) {
  const AlarmQueue::Lift lift(Alarms());
  while (!done()) {
    if (RunOutside(Now())) continue;
    FireDue();
    if (done()) return true;
    if (Now() >= deadline) return false;
    Instant next = std::min(deadline, Alarms().Earliest().value_or(deadline));
    if (!outside_.empty()) next = std::min(next, outside_.begin()->first);
    clock_.Set(std::max(Now(), next));
  }
  return true;
}

void VirtualLoop::Pause(Instant until) {
  clock_.Set(std::max(Now(), until));
}

}  // namespace quarlin
