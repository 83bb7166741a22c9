// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/watchdog.h"

#include <unistd.h>

#include <QJSEngine>
#include <fstream>
#include <utility>

namespace quarlin::jscript {
namespace {

// What the process has in memory right now; 0 where the system does not tell.
std::size_t ProcessMemory() {
  std::ifstream file("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  file >> all >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

Watchdog::Watchdog(QJSEngine& engine, vbs::Services& services, Limits limits)
    : engine_(engine),
      services_(services),
      mostSilence_(limits.silence),
      mostMemory_(ProcessMemory() + limits.memory) {
  if (services_.Outside() != nullptr) services_.Outside()->Add(*this);
}

Watchdog::~Watchdog() {
  if (services_.Outside() != nullptr) services_.Outside()->Remove(*this);
}

void Watchdog::Enter() {
  const std::uint64_t before = runs_.load(std::memory_order_relaxed);
  runs_.store(before + 1, std::memory_order_relaxed);
  if (before == seenRuns_.load(std::memory_order_relaxed)) timeToAsk_.store(true, std::memory_order_relaxed);
  inHost_.store(false, std::memory_order_relaxed);
  depth_.store(depth_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

Interruption Watchdog::Leave() {
  const int depth = depth_.load(std::memory_order_relaxed) - 1;
  inHost_.store(depth > 0, std::memory_order_relaxed);
  depth_.store(depth);
  if (!judging_.load() && !Condemned() && !engine_.isInterrupted()) return Interruption::None;
  const std::lock_guard lock(mutex_);
  if (engine_.isInterrupted()) engine_.setInterrupted(false);
  condemned_.store(false, std::memory_order_relaxed);
  return std::exchange(interruption_, Interruption::None);
}

void Watchdog::Look(Duration passed) {
  const std::lock_guard lock(mutex_);
  const bool lives = Lives();
  silence_ = lives ? Duration{} : silence_ + passed;
  judging_.store(true);
  if (depth_.load() > 0) {
    timeToAsk_.store(true, std::memory_order_relaxed);
    if (interruption_ == Interruption::None) interruption_ = Judge();
    condemned_.store(interruption_ != Interruption::None, std::memory_order_relaxed);
    if (Condemned() && !lives) engine_.setInterrupted(true);
  }
  judging_.store(false);
}

bool Watchdog::Lives() {
  const std::uint64_t runs = runs_.load(std::memory_order_relaxed);
  const bool isNew = seenRuns_.exchange(runs, std::memory_order_relaxed) != runs;
  const bool wasHeard = heard_.exchange(false, std::memory_order_relaxed);
  return isNew || wasHeard || inHost_.load(std::memory_order_relaxed);
}

// A host call sees for itself that its script must stop.
Interruption Watchdog::Judge() const {
  if (inHost_.load(std::memory_order_relaxed)) return Interruption::None;
  if (services_.MustStop()) return Interruption::Stop;
  if (silence_ >= mostSilence_) return Interruption::Silence;
  return ProcessMemory() > mostMemory_ ? Interruption::Memory : Interruption::None;
}

}  // namespace quarlin::jscript
