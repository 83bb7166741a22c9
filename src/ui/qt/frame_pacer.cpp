#include "ui/qt/frame_pacer.h"

#include <algorithm>

namespace quarlin {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

FramePacer::FramePacer(std::function<void()> frame) : frame_(std::move(frame)) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Run(); });
}

void FramePacer::Request() {
  if (timer_.isActive()) return;
  const auto quiet = sinceFrame_.isValid() ? nanoseconds(sinceFrame_.nsecsElapsed()) : pause_;
  timer_.start(std::chrono::ceil<milliseconds>(std::max<nanoseconds>(pause_ - quiet, nanoseconds(0))));
}

microseconds FramePacer::PauseAfter(microseconds cost) {
  constexpr microseconds interval = milliseconds(33);
  return std::max(interval - cost, 9 * cost);
}

void FramePacer::Run() {
  QElapsedTimer cost;
  cost.start();
  frame_();
  pause_ = PauseAfter(std::chrono::duration_cast<microseconds>(nanoseconds(cost.nsecsElapsed())));
  sinceFrame_.start();
}

}  // namespace quarlin
