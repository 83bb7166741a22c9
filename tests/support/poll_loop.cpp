// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/poll_loop.h"

#include <poll.h>

#include <algorithm>

#include "base/scope_flag.h"

namespace quarlin {
namespace {

// Rounded up, or the last part of a wait would be spent in turns without a wait.
int Milliseconds(Duration duration) {
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::max(duration, Duration::zero()));
  return static_cast<int>(wait.count());
}

}  // namespace

struct PollLoop::Watched {
  int descriptor;
  short events;
  std::function<void()> ready;
  bool enabled = true;
  bool running = false;  // its handler is on the stack: a yield inside it must not enter it again
};

// The loop keeps its own share for as long as a handler runs, so a handler may end its own watch.
class PollLoop::PollWatch : public Watch {
 public:
  PollWatch(PollLoop& loop, std::shared_ptr<Watched> watched) : loop_(loop), watched_(std::move(watched)) {}
  ~PollWatch() override {
    watched_->enabled = false;
    std::erase(loop_.watched_, watched_);
  }
  void SetEnabled(bool enabled) override { watched_->enabled = enabled; }

 private:
  PollLoop& loop_;
  std::shared_ptr<Watched> watched_;
};

PollLoop::PollLoop() = default;
PollLoop::~PollLoop() = default;

std::unique_ptr<Watch> PollLoop::Add(int descriptor, short events, std::function<void()> ready) {
  watched_.push_back(std::make_shared<Watched>(Watched{descriptor, events, std::move(ready)}));
  return std::make_unique<PollWatch>(*this, watched_.back());
}

std::unique_ptr<Watch> PollLoop::WatchReadable(int descriptor, std::function<void()> ready) {
  return Add(descriptor, POLLIN, std::move(ready));
}

std::unique_ptr<Watch> PollLoop::WatchWritable(int descriptor, std::function<void()> ready) {
  return Add(descriptor, POLLOUT, std::move(ready));
}

void PollLoop::ServeDescriptors(Instant until) {
  std::vector<std::shared_ptr<Watched>> asked;
  std::vector<pollfd> polled;
  for (const auto& watched : watched_) {
    if (!watched->enabled || watched->running) continue;
    asked.push_back(watched);
    polled.push_back({watched->descriptor, watched->events, 0});
  }
  if (poll(polled.data(), polled.size(), Milliseconds(until - Now())) <= 0) return;
  for (std::size_t i = 0; i < asked.size(); ++i) {
    if (polled[i].revents == 0 || !asked[i]->enabled) continue;
    ++wakes_;
    const ScopeFlag running(asked[i]->running);
    asked[i]->ready();
  }
}

void PollLoop::DoEvents() {
  const AlarmQueue::Hold hold(Alarms());
  ServeDescriptors(Now());
}

bool PollLoop::WaitUntil(const std::function<bool()>& done, Instant deadline) {
  const AlarmQueue::Hold hold(Alarms());
  while (!done()) {
    if (Now() >= deadline) return false;
    ServeDescriptors(deadline);
  }
  return true;
}

bool PollLoop::RunUntil(const std::function<bool()>& done, Instant deadline) {
  const AlarmQueue::Lift lift(Alarms());
  return Run(done, deadline - Now());
}

void PollLoop::Pause(Instant until) {
  while (Now() < until) poll(nullptr, 0, Milliseconds(until - Now()));
}

bool PollLoop::Run(const std::function<bool()>& done, Duration atMost) {
  const Instant deadline = Now() + atMost;
  while (!done()) {
    const bool late = Now() >= deadline;
    if (!Alarms().FireNext(Now()))
      ServeDescriptors(std::min(deadline, Alarms().Earliest().value_or(deadline)));
    if (late) return done();
  }
  return true;
}

}  // namespace quarlin
