// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/qt_loop.h"

#include <poll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <utility>

namespace quarlin {
namespace {

constexpr Duration turnTime = std::chrono::milliseconds(4);
constexpr Duration quickTime = std::chrono::milliseconds(1);  // between two calls of one descriptor

// Sets a number for as long as it lives.
class ScopeValue {
 public:
  ScopeValue(int& number, int value) : number_(number), before_(std::exchange(number, value)) {}
  ~ScopeValue() { number_ = before_; }
  ScopeValue(const ScopeValue&) = delete;
  ScopeValue& operator=(const ScopeValue&) = delete;

 private:
  int& number_;
  int before_;
};

timespec TimespecOf(Instant instant) {
  const std::int64_t nanoseconds = std::max<std::int64_t>(instant.time_since_epoch().count(), 1);
  return {nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
}

}  // namespace

// What a watch and the turns that serve it have in common: a turn outlives a watch that ends in its handler.
struct QtLoop::Watched {
  int descriptor;
  short events;
  std::function<void()> ready;
  bool enabled = true;
  Instant served{};
};

class QtLoop::NotifierWatch final : public Watch {
 public:
  NotifierWatch(QtLoop& loop, Watched watched)
      : watched_(std::make_shared<Watched>(std::move(watched))),
        notifier_(std::make_unique<QSocketNotifier>(watched_->descriptor, watched_->events == POLLIN
                                                                              ? QSocketNotifier::Read
                                                                              : QSocketNotifier::Write)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [&loop, watched = watched_] { loop.Turn(watched.get()); });
  }

  // The watch may end inside its own handler.
  ~NotifierWatch() override {
    SetEnabled(false);
    notifier_.release()->deleteLater();
  }

  void SetEnabled(bool enabled) override {
    if (std::exchange(watched_->enabled, enabled) != enabled) notifier_->setEnabled(enabled);
  }

 private:
  std::shared_ptr<Watched> watched_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

QtLoop::QtLoop()
    : timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      timerWatch_(std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read)) {
  QObject::connect(timerWatch_.get(), &QSocketNotifier::activated, timerWatch_.get(),
                   [this] { TimerFired(); });
}

QtLoop::~QtLoop() {
  timerWatch_.reset();
  close(timer_);
}

int QtLoop::Run() {
  return QCoreApplication::exec();
}

void QtLoop::Quit(int status) {
  QCoreApplication::exit(status);
}

void QtLoop::TimerFired() {
  std::uint64_t expirations = 0;
  const ssize_t got = read(timer_, &expirations, sizeof expirations);
  if (got > 0) armed_.reset();
  Turn(nullptr);
}

void QtLoop::Turn(Watched* watched) {
  const Instant start = Now();
  if (depth_ == 0) windowServed_ = start;
  {
    const ScopeValue deeper(depth_, depth_ + 1);
    do {
      if (watched != nullptr) watched->ready();
      FireDue(start + turnTime);
    } while (watched != nullptr && CallsAgain(*watched, start + quickTime));
  }
  ArmForAlarms();
}

void QtLoop::FireDue(Instant end) {
  for (Instant now = Now(); now < end && Alarms().FireNext(now);) now = Now();
}

// The way through the toolkit and back costs more than a short answer, so the next request of a client in a
// hurry is waited for here. The end of the wait is the timer's, set once for many waits: a time limit of
// each single wait would cost more than the way that is saved.
bool QtLoop::CallsAgain(Watched& watched, Instant end) {
  const Instant now = Now();
  const bool hurries = now - std::exchange(watched.served, now) < quickTime;
  if (!hurries || now >= end || !watched.enabled || depth_ > 1 || Alarms().Held()) return false;
  const Instant limit = std::min(end, Alarms().Earliest().value_or(end));
  if (!armed_ || limit < *armed_) Arm(limit);
  std::array<pollfd, 2> asked{{{watched.descriptor, watched.events, 0}, {timer_, POLLIN, 0}}};
  return poll(asked.data(), asked.size(), -1) > 0 && asked[0].revents != 0 && asked[1].revents == 0;
}

void QtLoop::AlarmSet() {
  ArmForAlarms();
}

// Inside a turn, or while a yield holds the alarms, this is left to the end of both: a timer that fires
// where no alarm may fire would only keep the program awake.
void QtLoop::ArmForAlarms() {
  if (depth_ > 0 || Alarms().Held()) return;
  const auto earliest = Alarms().Earliest();
  if (earliest && (!armed_ || *earliest < *armed_)) Arm(*earliest);
}

void QtLoop::Arm(Instant at) {
  armed_ = at;
  const itimerspec setting{{0, 0}, TimespecOf(at)};
  timerfd_settime(timer_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

std::unique_ptr<Watch> QtLoop::WatchReadable(int descriptor, std::function<void()> ready) {
  return std::make_unique<NotifierWatch>(*this, Watched{descriptor, POLLIN, std::move(ready)});
}

std::unique_ptr<Watch> QtLoop::WatchWritable(int descriptor, std::function<void()> ready) {
  return std::make_unique<NotifierWatch>(*this, Watched{descriptor, POLLOUT, std::move(ready)});
}

void QtLoop::DoEvents() {
  if (Now() - windowServed_ < turnTime) return;
  {
    const AlarmQueue::Hold hold(Alarms());
    QCoreApplication::processEvents();
    windowServed_ = Now();
  }
  ArmForAlarms();
}

bool QtLoop::WaitUntil(const std::function<bool()>& done, Instant deadline) {
  bool isDone = done();
  {
    const AlarmQueue::Hold hold(Alarms());
    while (!isDone && Now() < deadline) {
      Arm(deadline);
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      windowServed_ = Now();
      isDone = done();
    }
  }
  ArmForAlarms();
  return isDone;
}

// The turns that are on the stack wait with it: those within the wait end as if they were the outermost. What
// is there already is served also where no time is left for it.
bool QtLoop::RunUntil(const std::function<bool()>& done, Instant deadline) {
  const ScopeValue outermost(depth_, 0);
  const AlarmQueue::Lift lift(Alarms());
  bool isDone = done();
  for (bool isLast = false; !isDone && !isLast;) {
    isLast = Now() >= deadline;
    Arm(std::min(deadline, Alarms().Earliest().value_or(deadline)));
    QCoreApplication::processEvents(isLast ? QEventLoop::AllEvents : QEventLoop::WaitForMoreEvents);
    windowServed_ = Now();
    isDone = done();
  }
  return isDone;
}

void QtLoop::Pause(Instant until) {
  const timespec end = TimespecOf(until);
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) != 0) {
  }
}

}  // namespace quarlin
