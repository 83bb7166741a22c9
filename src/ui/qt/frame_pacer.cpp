// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/frame_pacer.h"

#include <algorithm>

namespace quarlin {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

namespace {

constexpr milliseconds rest(150);  // so long without a request, and the window was quiet
constexpr int framesOfASecond = 30;
constexpr milliseconds steadyInterval(66);  // nobody reads lines that run by

}  // namespace

FramePacer::FramePacer(std::function<void()> frame, milliseconds interval)
    : frame_(std::move(frame)), interval_(interval) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Run(); });
}

void FramePacer::Request() {
  if (timer_.isActive()) return;
  const auto quiet = sinceFrame_.isValid() ? nanoseconds(sinceFrame_.nsecsElapsed()) : pause_;
  if (quiet > rest) framesInARow_ = 0;
  timer_.start(std::chrono::ceil<milliseconds>(std::max<nanoseconds>(pause_ - quiet, nanoseconds(0))));
}

void FramePacer::RequestAtOnce() {
  pause_ = {};
  timer_.start(0);
}

void FramePacer::AddCost(microseconds cost) {
  cost_ += cost;
  BeginPause();
}

microseconds FramePacer::PauseAfter(microseconds cost, microseconds interval) {
  return std::max(interval - cost, 9 * cost);
}

void FramePacer::Run() {
  QElapsedTimer cost;
  cost.start();
  frame_();
  framesInARow_ = std::min(framesInARow_ + 1, framesOfASecond);
  cost_ = std::chrono::duration_cast<microseconds>(nanoseconds(cost.nsecsElapsed()));
  BeginPause();
}

void FramePacer::BeginPause() {
  pause_ =
      PauseAfter(cost_, framesInARow_ < framesOfASecond ? interval_ : std::max(interval_, steadyInterval));
  sinceFrame_.start();
}

}  // namespace quarlin
