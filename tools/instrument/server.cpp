#include "instrument/server.h"

#include <poll.h>
#include <sys/prctl.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quarlin::instrument {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t readAtOnce = 4096;
constexpr Duration longestFetching = 2s;
constexpr Duration fetchingStep = 1ms;

timespec FromDuration(Duration duration) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(duration);
  return {seconds.count(), std::chrono::nanoseconds(duration - seconds).count()};
}

}  // namespace

Server::Server(Instrument& instrument, const PtyPort& port, const SignalInput& signals, const Clock& clock,
               std::function<void()> report)
    : instrument_(instrument), port_(port), signals_(signals), clock_(clock), report_(std::move(report)) {}

std::error_code Server::Run() {
  prctl(PR_SET_TIMERSLACK, 1);  // nanosecond; by default a deadline may be 50 microseconds late
  while (!instrument_.Finished()) {
    const Ready ready = Wait();
    if (ready.ended) return {};
    const Instant now = clock_.Now();
    if (ready.input) {
      if (const auto error = TakeInput(now)) return error;
    }
    if (const auto error = GiveOutput(now)) return error;
  }
  AwaitFetching();
  return {};
}

Server::Ready Server::Wait() {
  const int events = (instrument_.WantsInput() ? POLLIN : 0) | (instrument_.HasUnsentOutput() ? POLLOUT : 0);
  const auto due = instrument_.NextDue();
  if (!due) return WaitFor(static_cast<short>(events), std::nullopt);
  return WaitFor(static_cast<short>(events), std::max(*due - clock_.Now(), Duration{0}));
}

Server::Ready Server::WaitFor(short portEvents, std::optional<Duration> atMost) {
  std::array<pollfd, 2> watched{{{port_.Descriptor(), portEvents, 0}, {signals_.Descriptor(), POLLIN, 0}}};
  const timespec timeout = FromDuration(atMost.value_or(Duration{0}));
  if (ppoll(watched.data(), watched.size(), atMost ? &timeout : nullptr, nullptr) <= 0) return {};
  Ready ready;
  ready.input = (watched[0].revents & ~POLLOUT) != 0;  // a failed port too: reading tells how
  if (watched[1].revents == 0) return ready;
  while (const auto signal = signals_.Next()) {
    if (*signal == Signal::End) ready.ended = true;
    if (*signal == Signal::Report) report_();
  }
  return ready;
}

std::error_code Server::TakeInput(Instant now) {
  std::array<char, readAtOnce> bytes;
  const Moved arrived = port_.Read(bytes);
  instrument_.Receive({bytes.data(), arrived.bytes}, now);
  return arrived.error;
}

std::error_code Server::GiveOutput(Instant now) {
  const auto output = instrument_.Output(now);
  if (output.empty()) return {};
  const Moved gone = port_.Write(output);
  instrument_.Sent(gone.bytes);
  return gone.error;
}

// Nothing tells when the client has fetched the last byte, so this looks again and again for a short while.
void Server::AwaitFetching() {
  const Instant end = clock_.Now() + longestFetching;
  while (port_.Unfetched() && clock_.Now() < end) {
    if (WaitFor(0, fetchingStep).ended) return;
  }
}

}  // namespace quarlin::instrument
