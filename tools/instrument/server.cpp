#include "instrument/server.h"

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

}  // namespace

Server::Server(Instrument& instrument, const PtyPort& port, const SignalInput& signals, const Clock& clock,
               std::function<void()> report)
    : instrument_(instrument),
      port_(port),
      signals_(signals),
      waiter_(port.Descriptor(), signals.Descriptor()),
      clock_(clock),
      report_(std::move(report)) {}

std::error_code Server::Run() {
  while (!instrument_.Finished()) {
    const auto due = instrument_.NextDue();
    const auto atMost = due ? std::optional(std::max(*due - clock_.Now(), Duration{0})) : std::nullopt;
    const Waiter::Interest interest{instrument_.WantsInput(), instrument_.HasUnsentOutput()};
    const auto ready = waiter_.Wait(interest, atMost);
    if (ready.signals && EndedBySignal()) return {};
    const Instant now = clock_.Now();
    if (ready.port && interest.input) {
      if (const auto error = TakeInput(now)) return error;
    }
    if (const auto error = GiveOutput(now)) return error;
  }
  AwaitFetching();
  return {};
}

bool Server::EndedBySignal() const {
  while (const auto signal = signals_.Next()) {
    if (*signal == Signal::End) return true;
    report_();
  }
  return false;
}

// A read that does not fill the buffer has taken all there was.
std::error_code Server::TakeInput(Instant now) {
  std::array<char, readAtOnce> bytes;
  const Moved arrived = port_.Read(bytes);
  if (arrived.bytes == bytes.size()) waiter_.LookAgain();
  instrument_.Receive({bytes.data(), arrived.bytes}, now);
  return arrived.error;
}

std::error_code Server::GiveOutput(Instant now) {
  const auto output = instrument_.Output(now);
  if (output.empty()) return {};
  const Moved gone = port_.Write(output);
  if (gone.bytes < output.size()) waiter_.LookAgain();
  instrument_.Sent(gone.bytes);
  return gone.error;
}

// Nothing tells when the client has fetched the last byte, so this looks again and again for a short while.
void Server::AwaitFetching() {
  const Instant end = clock_.Now() + longestFetching;
  while (port_.Unfetched() && clock_.Now() < end) {
    if (waiter_.Wait({}, fetchingStep).signals && EndedBySignal()) return;
  }
}

}  // namespace quarlin::instrument
