// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/run_guard.h"

#include <algorithm>

namespace quarlin {
namespace {

constexpr Duration patience = std::chrono::seconds(10);
constexpr Duration betweenLooks = std::chrono::milliseconds(1);
constexpr int mostAsksBetweenLooks = 1 << 10;

}  // namespace

Duration RunGuard::OwnTime() const {
  return loop_.Now().time_since_epoch() - prompts_.TimeShown();
}

void RunGuard::Start() {
  stopped_ = false;
  StartPeriod();
}

void RunGuard::StartPeriod() {
  begin_ = lastLook_ = OwnTime();
  asksBetweenLooks_ = asksLeft_ = 1;
}

bool RunGuard::Look() {
  asksLeft_ = 1;
  if (stopped_) return false;
  const Duration now = OwnTime();
  if (now - begin_ >= patience) {
    stopped_ = prompts_.Confirm("The script is not responding. Stop it?", "Quarlin");
    StartPeriod();
    return !stopped_;
  }
  if (now - lastLook_ < betweenLooks) {
    asksBetweenLooks_ = std::min(asksBetweenLooks_ * 2, mostAsksBetweenLooks);
  } else if (now - lastLook_ > 4 * betweenLooks) {
    asksBetweenLooks_ = 1;  // each ask stands for much work
  }
  lastLook_ = now;
  asksLeft_ = asksBetweenLooks_;
  return true;
}

}  // namespace quarlin
