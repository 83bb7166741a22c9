// SPDX-License-Identifier: GPL-3.0-or-later
// Watches over a script that does not come to an end: after ten seconds of its own in one call the user is
// asked whether to stop it.
#pragma once

#include "script/timed_prompts.h"

namespace quarlin {

class RunGuard {
 public:
  RunGuard(const EventLoop& loop, TimedPrompts& prompts) : loop_(loop), prompts_(prompts) {}

  // A call of the script begins.
  void Start();

  // Costs next to nothing: it looks at the clock only so often that a millisecond or so passes between two
  // looks. Once it has said no, it goes on saying so until the next start. Yields while it asks the user.
  bool MayGoOn() { return --asksLeft_ > 0 || Look(); }

  // Whether the call that began last was stopped.
  bool Stopped() const { return stopped_; }

 private:
  bool Look();
  void StartPeriod();
  Duration OwnTime() const;

  const EventLoop& loop_;
  TimedPrompts& prompts_;
  Duration begin_{};     // of the ten seconds, in time of the script's own
  Duration lastLook_{};  // likewise
  int asksBetweenLooks_ = 1;
  int asksLeft_ = 1;
  bool stopped_ = false;
};

}  // namespace quarlin
