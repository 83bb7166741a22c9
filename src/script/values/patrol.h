// SPDX-License-Identifier: GPL-3.0-or-later
// Looks at scripts from outside while they run: a thread, which the first run makes, that looks fifty times a
// second and sleeps for good a second after the last run.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "base/clock.h"

namespace quarlin::vbs {

// Who is to look.
class Lookout {
 public:
  // On the patrol's thread, while a script runs and for a second more: it may touch nothing that is not
  // guarded or atomic. `passed` is the time since the last look, as far as the machine was awake.
  virtual void Look(Duration passed) = 0;

 protected:
  ~Lookout() = default;
};

class Patrol {
 public:
  Patrol() = default;
  ~Patrol();
  Patrol(const Patrol&) = delete;
  Patrol& operator=(const Patrol&) = delete;

  // Around each run, on one thread; runs may lie within each other. Costs next to nothing.
  void Enter();
  void Leave() { runs_.store(runs_.load(std::memory_order_relaxed) - 1); }

  // Once Remove has returned, no look of that one goes on.
  void Add(Lookout& lookout);
  void Remove(Lookout& lookout);

 private:
  void WakeUp();
  void Walk();
  bool FallsAsleep();

  // Whoever enters writes runs_ and then reads asleep_, the thread the other way round: one of them sees the
  // other's word.
  std::atomic<int> runs_ = 0;
  std::atomic<bool> asleep_ = true;

  std::mutex mutex_;  // guards what follows
  std::condition_variable wake_;
  std::vector<Lookout*> lookouts_;
  int idleLooks_ = 0;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace quarlin::vbs
