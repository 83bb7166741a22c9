// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/watchdog.h"

#include <unistd.h>

#include <QJSEngine>
#include <algorithm>
#include <fstream>

namespace quarlin::jscript {
namespace {

constexpr Duration betweenLooks = std::chrono::milliseconds(20);
constexpr int idleLooksBeforeSleep = 50;

// What the process has in memory right now; 0 where the system does not tell.
std::size_t ProcessMemory() {
  std::ifstream file("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  file >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

Watchdog::Watchdog(QJSEngine& engine, Limits limits)
    : engine_(engine),
      mostSilentLooks_(std::max<std::int64_t>(limits.silence / betweenLooks, 1)),
      mostMemory_(ProcessMemory() + limits.memory) {}

Watchdog::~Watchdog() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  wake_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void Watchdog::Enter() {
  const std::lock_guard lock(mutex_);
  ++depth_;
  ++runs_;
  inHost_.store(false, std::memory_order_relaxed);
  if (!thread_.joinable()) thread_ = std::thread([this] { Watch(); });
  if (!asleep_) return;
  asleep_ = false;
  wake_.notify_one();
}

Interruption Watchdog::Leave() {
  const std::lock_guard lock(mutex_);
  --depth_;
  inHost_.store(depth_ > 0, std::memory_order_relaxed);
  if (engine_.isInterrupted()) engine_.setInterrupted(false);
  return std::exchange(interruption_, Interruption::None);
}

void Watchdog::Watch() {
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (depth_ == 0 && idleLooks_ >= idleLooksBeforeSleep) {
      asleep_ = true;
      wake_.wait(lock, [this] { return ends_ || !asleep_; });
      idleLooks_ = 0;
    } else {
      wake_.wait_for(lock, betweenLooks, [this] { return ends_; });
      Look();
    }
  }
}

void Watchdog::Look() {
  if (depth_ == 0) {
    ++idleLooks_;
    return;
  }
  idleLooks_ = 0;
  timeToAsk_.store(true, std::memory_order_relaxed);
  const bool lives = inHost_.load(std::memory_order_relaxed) ||
                     heard_.exchange(false, std::memory_order_relaxed) || runs_ != seenRuns_;
  seenRuns_ = runs_;
  silentLooks_ = lives ? 0 : silentLooks_ + 1;
  if (interruption_ != Interruption::None) return;
  interruption_ = Judge();
  if (interruption_ != Interruption::None) engine_.setInterrupted(true);
}

Interruption Watchdog::Judge() {
  if (inHost_.load(std::memory_order_relaxed)) return Interruption::None;
  if (silentLooks_ >= mostSilentLooks_) return Interruption::Silence;
  return ProcessMemory() > mostMemory_ ? Interruption::Memory : Interruption::None;
}

}  // namespace quarlin::jscript
