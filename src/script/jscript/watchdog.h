// SPDX-License-Identifier: GPL-3.0-or-later
// Interrupts a script that neither ends nor calls its host, or that takes all memory.
//
// A thread looks fifty times a second while scripts run; it is made by the first run, and sleeps for good a
// second after the last one. It never calls anything but QJSEngine::setInterrupted.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <thread>

#include "script/jscript/engine.h"

class QJSEngine;

namespace quarlin::jscript {

enum class Interruption { None, Silence, Memory };

class Watchdog {
 public:
  Watchdog(QJSEngine& engine, Limits limits);
  ~Watchdog();

  // Around each run. Runs may lie within host calls of other runs. Leave tells whether the thread
  // interrupted that run, and lifts the interruption.
  void Enter();
  Interruption Leave();

  // Around each host call, whose time is not the script's.
  void BeginHostCall() { inHost_.store(true, std::memory_order_relaxed); }
  void EndHostCall() {
    heard_.store(true, std::memory_order_relaxed);
    inHost_.store(false, std::memory_order_relaxed);
  }

  // Once for each look of the thread at a running script: time to ask whether the script may go on.
  bool TimeToAsk() {
    return timeToAsk_.load(std::memory_order_relaxed) &&
           timeToAsk_.exchange(false, std::memory_order_relaxed);
  }

 private:
  void Watch();
  void Look();
  Interruption Judge();

  QJSEngine& engine_;
  const std::int64_t mostSilentLooks_;
  const std::size_t mostMemory_;  // of the process
  std::atomic<bool> inHost_ = false;
  std::atomic<bool> heard_ = false;
  std::atomic<bool> timeToAsk_ = false;

  std::mutex mutex_;  // guards what follows
  std::condition_variable wake_;
  int depth_ = 0;
  std::uint64_t runs_ = 0;
  std::uint64_t seenRuns_ = 0;
  std::int64_t silentLooks_ = 0;
  int idleLooks_ = 0;
  bool asleep_ = false;
  bool ends_ = false;
  Interruption interruption_ = Interruption::None;
  std::thread thread_;
};

}  // namespace quarlin::jscript
