// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/patrol.h"

#include <algorithm>
#include <utility>

namespace quarlin::vbs {
namespace {

constexpr Duration betweenLooks = std::chrono::milliseconds(20);
constexpr int idleLooksBeforeSleep = 50;

// A process that was halted for longer, by a debugger for instance, has not worked meanwhile.
constexpr Duration mostPassed = std::chrono::milliseconds(500);

}  // namespace

Patrol::~Patrol() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void Patrol::Enter() {
  runs_.store(runs_.load(std::memory_order_relaxed) + 1);
  if (asleep_.load()) WakeUp();
}

void Patrol::WakeUp() {
  const std::lock_guard lock(mutex_);
  asleep_ = false;
  if (!thread_.joinable()) thread_ = std::thread([this] { Walk(); });
  wake_.notify_one();
}

void Patrol::Add(Lookout& lookout) {
  const std::lock_guard lock(mutex_);
  lookouts_.push_back(&lookout);
}

void Patrol::Remove(Lookout& lookout) {
  const std::lock_guard lock(mutex_);
  std::erase(lookouts_, &lookout);
}

void Patrol::Walk() {
  const SystemClock clock;
  std::unique_lock lock(mutex_);
  Instant last = clock.Now();
  while (!ends_) {
    if (FallsAsleep()) {
      wake_.wait(lock, [this] { return ends_ || !asleep_; });
      last = clock.Now();
    }
    wake_.wait_for(lock, betweenLooks, [this] { return ends_; });
    const Instant now = clock.Now();
    const Duration passed = std::min(now - std::exchange(last, now), mostPassed);
    idleLooks_ = runs_ == 0 ? idleLooks_ + 1 : 0;
    for (std::size_t i = 0; i < lookouts_.size() && !ends_; ++i) lookouts_[i]->Look(passed);
  }
}

bool Patrol::FallsAsleep() {
  if (idleLooks_ < idleLooksBeforeSleep) return false;
  idleLooks_ = 0;
  asleep_ = true;
  if (runs_ > 0) asleep_ = false;
  return asleep_;
}

}  // namespace quarlin::vbs
