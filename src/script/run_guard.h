// SPDX-License-Identifier: GPL-3.0-or-later
// Watches over a script that does not come to an end: after ten seconds of its own in one call the user is
// asked whether to stop it, and where nobody is there to be asked it is stopped. When the program is to end,
// what runs has half a second left, and all calls from then on together one more.
//
// At a window that somebody may want to use, a script that computes for long lets the user in now and then:
// what is clicked meanwhile is done in the middle of the script, as in a box that it shows.
//
// A script that has been stopped and still does not return, because a single operation of its engine goes on
// and on, leaves one way: the process ends, two seconds later. Somebody at a window may prefer to wait, so
// there this is done only once the program is to end.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "script/timed_prompts.h"
#include "script/values/patrol.h"

namespace quarlin {

// How the end of the program reaches scripts that do not return. Called on any thread; each may be empty.
struct LastResort {
  std::function<bool()> endWaits;                     // a signal that is to end the program has come
  std::function<void(std::string_view why)> abandon;  // ends the process at once
  bool nobodyToAsk = false;                           // there is no window
};

class RunGuard : private vbs::Lookout {
 public:
  RunGuard(const EventLoop& loop, TimedPrompts& prompts, LastResort lastResort);
  ~RunGuard();
  RunGuard(const RunGuard&) = delete;
  RunGuard& operator=(const RunGuard&) = delete;

  // Around a call of the script; not around one within another.
  void Begin();
  void End();

  // Around a wait within a call. The event loop sees to its end, so nobody has to look from outside.
  void Rest() { patrol_.Leave(); }
  void GoOn() { patrol_.Enter(); }

  // Costs next to nothing: it looks at the clock only so often that a millisecond or so passes between two
  // looks. Once it has said no, it goes on saying so until the next call begins. Yields while it asks the
  // user or lets her in.
  bool MayGoOn() { return (--asksLeft_ > 0 && !lookNow_.load(std::memory_order_relaxed)) || Judge(); }

  // From any thread: the running call has no time left.
  bool MustStop() const { return condemned_.load(std::memory_order_relaxed) == call_; }

  // Whether the call that began last was stopped.
  bool Stopped() const { return stopped_ || MustStop(); }

  // The program is to end; no script should be called any more but for its last word.
  void EndProgram() { ending_ = true; }
  bool Ending() const { return ending_; }

  // Serves the window, twenty times a second once a call has taken a third of one; not any more when the
  // program is to end. False: what runs is to stop.
  Hook<bool()> OnLongCall;

  // What the question is about, for its second paragraph.
  Hook<std::string()> Whereabouts;

  vbs::Patrol& Outside() { return patrol_; }

 private:
  bool Judge();
  bool AskUser();
  bool LetsUserIn(Duration now);
  void StartPeriod();
  Duration OwnTime() const;

  void Look(Duration passed) override;
  bool IsOutOfTime() const;
  void AbandonWhenStuck() const;

  const EventLoop& loop_;
  TimedPrompts& prompts_;
  const LastResort lastResort_;
  Duration begin_{};     // of the ten seconds, in time of the script's own
  Duration lastLook_{};  // likewise
  Duration nextUser_{};  // likewise: when the user is let in
  int asksBetweenLooks_ = 1;
  int asksLeft_ = 1;
  bool stopped_ = false;

  std::atomic<bool> lookNow_ = false;  // each ask may stand for much work
  std::atomic<bool> ending_ = false;
  std::atomic<bool> inCall_ = false;
  std::atomic<bool> isLastWord_ = false;  // the running call began when the program was already to end
  std::atomic<std::uint64_t> call_ = 1;   // the number of the call that began last
  std::atomic<std::uint64_t> condemned_ = 0;

  // The thread's own, by the time that it has seen pass.
  std::uint64_t seenCall_ = 0;
  Duration ownTime_{};         // of that call
  Duration sinceCondemned_{};  // likewise
  Duration sinceEnding_{};

  vbs::Patrol patrol_;  // ends first
};

}  // namespace quarlin
