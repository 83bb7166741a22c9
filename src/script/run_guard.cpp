// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/run_guard.h"

#include <algorithm>
#include <utility>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr Duration patience = 10s;
constexpr Duration betweenLooks = 1ms;
constexpr Duration beforeUser = 300ms;
constexpr Duration betweenUsers = 50ms;
constexpr int mostAsksBetweenLooks = 1 << 10;

// Seen from outside. A script that can be asked has stopped by itself then.
constexpr Duration patienceOutside = patience + 100ms;
constexpr Duration toReturn = 2s;

// From the signal on: for the running call, for all that begin later, for the whole program.
constexpr Duration toFinish = 500ms;
constexpr Duration toFinishLastWord = 1500ms;
constexpr Duration toEnd = 2500ms;

}  // namespace

RunGuard::RunGuard(const EventLoop& loop, TimedPrompts& prompts, LastResort lastResort)
    : loop_(loop), prompts_(prompts), lastResort_(std::move(lastResort)) {
  patrol_.Add(*this);
}

RunGuard::~RunGuard() {
  patrol_.Remove(*this);
}

Duration RunGuard::OwnTime() const {
  return loop_.Now().time_since_epoch() - prompts_.TimeOfOthers();
}

void RunGuard::Begin() {
  stopped_ = false;
  isLastWord_ = ending_.load();
  ++call_;
  inCall_ = true;
  patrol_.Enter();
  StartPeriod();
}

void RunGuard::End() {
  patrol_.Leave();
  inCall_ = false;
}

void RunGuard::StartPeriod() {
  begin_ = lastLook_ = OwnTime();
  nextUser_ = begin_ + beforeUser;
  asksBetweenLooks_ = asksLeft_ = 1;
}

bool RunGuard::LetsUserIn(Duration now) {
  if (now < nextUser_ || lastResort_.nobodyToAsk || !OnLongCall || ending_ || prompts_.Dismissed())
    return true;
  {
    const TimedPrompts::OthersTime hers(prompts_);
    stopped_ = !OnLongCall();
  }
  nextUser_ = OwnTime() + betweenUsers;
  return !stopped_;
}

bool RunGuard::Judge() {
  lookNow_.store(false, std::memory_order_relaxed);
  asksLeft_ = 1;
  stopped_ = Stopped();
  if (stopped_) return false;
  const Duration now = OwnTime();
  if (now - begin_ >= patience) return AskUser();
  if (!LetsUserIn(now)) return false;
  if (now - lastLook_ < betweenLooks) {
    asksBetweenLooks_ = std::min(asksBetweenLooks_ * 2, mostAsksBetweenLooks);
  } else if (now - lastLook_ > 4 * betweenLooks) {
    asksBetweenLooks_ = 1;  // each ask stands for much work
  }
  lastLook_ = now;
  asksLeft_ = asksBetweenLooks_;
  return true;
}

// The box that was answered would stay on the screen until the windows are served, so that is done at once.
bool RunGuard::AskUser() {
  const std::string where = Whereabouts();
  stopped_ = prompts_.Confirm(
      "The script is not responding. Stop it?" + (where.empty() ? where : "\n\n" + where), "Quarlin");
  StartPeriod();
  if (stopped_) return false;
  nextUser_ = begin_;
  return LetsUserIn(begin_);
}

void RunGuard::Look(Duration passed) {
  if (!inCall_) return;
  lookNow_.store(true, std::memory_order_relaxed);
  if (!ending_ && lastResort_.endWaits && lastResort_.endWaits()) ending_ = true;
  const std::uint64_t call = call_;
  if (std::exchange(seenCall_, call) != call) ownTime_ = sinceCondemned_ = Duration{};
  if (!prompts_.IsOthersTime()) ownTime_ += passed;
  if (ending_) sinceEnding_ += passed;
  if (condemned_ == call) sinceCondemned_ += passed;
  if (IsOutOfTime()) condemned_ = call;
  AbandonWhenStuck();
}

bool RunGuard::IsOutOfTime() const {
  if (ending_ && sinceEnding_ >= (isLastWord_ ? toFinishLastWord : toFinish)) return true;
  return lastResort_.nobodyToAsk && ownTime_ >= patienceOutside;
}

void RunGuard::AbandonWhenStuck() const {
  if (!lastResort_.abandon) return;
  if (ending_ && sinceEnding_ >= toEnd) {
    lastResort_.abandon("the script does not let the program end; it was abandoned");
  } else if (lastResort_.nobodyToAsk && sinceCondemned_ >= toReturn) {
    lastResort_.abandon("the script does not respond and cannot be stopped; it was abandoned");
  }
}

}  // namespace quarlin
