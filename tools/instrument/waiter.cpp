// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/waiter.h"

#include <sys/epoll.h>
#include <sys/prctl.h>
#include <time.h>

#include <array>

#include "instrument/system_call.h"

namespace quarlin::instrument {

namespace {

timespec FromDuration(Duration duration) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(duration);
  return {seconds.count(), std::chrono::nanoseconds(duration - seconds).count()};
}

void Watch(int epoll, int operation, int descriptor, std::uint32_t events) {
  epoll_event watch{};
  watch.events = events;
  watch.data.fd = descriptor;
  Require(epoll_ctl(epoll, operation, descriptor, &watch) == 0, "waiting");
}

}  // namespace

Waiter::Waiter(int signals, int door) : epoll_(epoll_create1(EPOLL_CLOEXEC)), door_(door) {
  if (door >= 0) Watch(epoll_.Get(), EPOLL_CTL_ADD, door, EPOLLIN | EPOLLET);
  Watch(epoll_.Get(), EPOLL_CTL_ADD, signals, EPOLLIN);
  prctl(PR_SET_TIMERSLACK, 1);  // nanosecond; by default a deadline may be 50 microseconds late
}

void Waiter::Carry(int port) {
  port_ = port;
  told_.reset();
  if (port >= 0) Watch(epoll_.Get(), EPOLL_CTL_ADD, port, EPOLLET);
}

Waiter::Ready Waiter::Wait(Interest interest, std::optional<Duration> atMost) {
  if (Carries() && told_ != interest) {
    const unsigned events = EPOLLET | (interest.input ? EPOLLIN : 0U) | (interest.room ? EPOLLOUT : 0U);
    Watch(epoll_.Get(), EPOLL_CTL_MOD, port_, events);
    told_ = interest;
  }
  std::array<epoll_event, 3> events{};
  const timespec timeout = FromDuration(atMost.value_or(Duration{0}));
  const int count = epoll_pwait2(epoll_.Get(), events.data(), static_cast<int>(events.size()),
                                 atMost ? &timeout : nullptr, nullptr);
  Ready ready;
  for (int i = 0; i < count; ++i) {
    const int descriptor = events[static_cast<std::size_t>(i)].data.fd;
    (descriptor == port_ ? ready.port : descriptor == door_ ? ready.door : ready.signals) = true;
  }
  return ready;
}

}  // namespace quarlin::instrument
