// SPDX-License-Identifier: GPL-3.0-or-later
// Interrupts a script that neither ends nor calls its host, that takes all memory, or that must stop. It
// looks from the patrol's thread, and calls nothing there but QJSEngine::setInterrupted and
// Services::MustStop.
//
// A script that calls its host now and then is left to stop in the next such call. For the engine does not
// bear an interruption anywhere: one that hits the look-up of a method, which may run code of the prelude,
// makes it crash.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "script/jscript/engine.h"
#include "script/values/patrol.h"

class QJSEngine;

namespace quarlin::jscript {

enum class Interruption { None, Silence, Memory, Stop };

class Watchdog : private vbs::Lookout {
 public:
  Watchdog(QJSEngine& engine, vbs::Services& services, Limits limits);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  // Around each run. Runs may lie within host calls of other runs. Leave tells whether that run was
  // interrupted, and lifts the interruption.
  void Enter();
  Interruption Leave();

  // Around each host call, whose time is not the script's, and after which it lives.
  void BeginHostCall() { inHost_.store(true, std::memory_order_relaxed); }
  void EndHostCall() {
    heard_.store(true, std::memory_order_relaxed);
    inHost_.store(false, std::memory_order_relaxed);
  }

  // Once for each look at a running script, and in a run that begins a while behind the last one: time to ask
  // whether the script may go on, and to see where it is.
  bool TimeToAsk() {
    return timeToAsk_.load(std::memory_order_relaxed) &&
           timeToAsk_.exchange(false, std::memory_order_relaxed);
  }

  // In a host call: whether the run is to be interrupted behind it.
  bool Condemned() const { return condemned_.load(std::memory_order_relaxed); }

 private:
  void Look(Duration passed) override;
  bool Lives();
  Interruption Judge() const;

  QJSEngine& engine_;
  vbs::Services& services_;
  const Duration mostSilence_;
  const std::size_t mostMemory_;  // of the process
  std::atomic<bool> inHost_ = false;
  std::atomic<bool> heard_ = false;
  std::atomic<bool> timeToAsk_ = false;
  std::atomic<bool> condemned_ = false;  // there is an interruption_

  std::atomic<std::uint64_t> runs_ = 0;
  std::atomic<std::uint64_t> seenRuns_ = 0;  // by the last look

  // Whoever leaves writes depth_ and then reads judging_, the thread the other way round: either the thread
  // sees that the run is over, or the run waits for what the thread makes of it.
  std::atomic<int> depth_ = 0;
  std::atomic<bool> judging_ = false;

  std::mutex mutex_;  // guards what follows
  Duration silence_{};
  Interruption interruption_ = Interruption::None;
};

}  // namespace quarlin::jscript
