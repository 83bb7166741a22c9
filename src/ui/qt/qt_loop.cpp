#include "ui/qt/qt_loop.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <algorithm>
#include <cstdint>
#include <ctime>

namespace quarlin {
namespace {

constexpr Duration turnTime = std::chrono::milliseconds(4);

timespec TimespecOf(Instant instant) {
  const std::int64_t nanoseconds = std::max<std::int64_t>(instant.time_since_epoch().count(), 1);
  return {nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
}

class NotifierWatch : public Watch {
 public:
  NotifierWatch(int descriptor, QSocketNotifier::Type type, const std::function<void()>& activated)
      : notifier_(std::make_unique<QSocketNotifier>(descriptor, type)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), activated);
  }

  // The watch may end inside its own handler.
  ~NotifierWatch() override {
    notifier_->setEnabled(false);
    notifier_.release()->deleteLater();
  }

  void SetEnabled(bool enabled) override { notifier_->setEnabled(enabled); }

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace

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
  Turn([] {});
}

void QtLoop::Turn(const std::function<void()>& serve) {
  if (depth_ == 0) windowServed_ = Now();
  ++depth_;
  serve();
  FireDue();
  --depth_;
  ArmForAlarms();
}

void QtLoop::FireDue() {
  const Instant start = Now();
  for (Instant now = start; now - start < turnTime && Alarms().FireNext(now);) now = Now();
}

void QtLoop::AlarmSet(Instant) {
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
  return std::make_unique<NotifierWatch>(descriptor, QSocketNotifier::Read,
                                         [this, ready = std::move(ready)] { Turn(ready); });
}

std::unique_ptr<Watch> QtLoop::WatchWritable(int descriptor, std::function<void()> ready) {
  return std::make_unique<NotifierWatch>(descriptor, QSocketNotifier::Write,
                                         [this, ready = std::move(ready)] { Turn(ready); });
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

void QtLoop::Pause(Instant until) {
  const timespec end = TimespecOf(until);
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) != 0) {
  }
}

}  // namespace quarlin
