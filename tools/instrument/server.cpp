// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/server.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace quarlin::instrument {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t readAtOnce = 65536;  // holds the longest datagram
constexpr Duration longestFetching = 2s;
constexpr Duration fetchingStep = 1ms;

}  // namespace

Server::Server(Instrument& instrument, Port& port, const SignalInput& signals, const Clock& clock,
               std::function<void()> report)
    : instrument_(instrument),
      port_(port),
      signals_(signals),
      waiter_(signals.Descriptor(), port.Door()),
      clock_(clock),
      report_(std::move(report)) {
  waiter_.Carry(port.Descriptor());
}

std::error_code Server::Run() {
  while (!instrument_.Finished()) {
    const auto due = waiter_.Carries() ? instrument_.NextDue() : std::nullopt;
    const auto atMost = due ? std::optional(std::max(*due - clock_.Now(), Duration{0})) : std::nullopt;
    const Waiter::Interest interest{instrument_.WantsInput(), instrument_.HasUnsentOutput()};
    const auto ready = waiter_.Wait(interest, atMost);
    if (ready.signals && EndedBySignal()) return {};
    if (ready.door && port_.LetIn()) ChangeClient();
    const Instant now = clock_.Now();
    if (ready.port && interest.input) {
      if (const auto error = TakeInput(now)) return error;
    }
    if (port_.Descriptor() >= 0) {
      if (const auto error = GiveOutput(now)) return error;
    }
    FollowClient();
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

std::error_code Server::TakeInput(Instant now) {
  std::array<char, readAtOnce> bytes;
  const Moved arrived = port_.Read(bytes);
  if (arrived.more) waiter_.LookAgain();
  if (arrived.ended) clientEnded_ = true;
  instrument_.Receive({bytes.data(), arrived.bytes}, now);
  return arrived.error;
}

std::error_code Server::GiveOutput(Instant now) {
  for (auto output = instrument_.Output(now); !output.empty(); output = instrument_.Output(now)) {
    const Moved gone = port_.Write(output);
    const bool all = gone.bytes == output.size();
    instrument_.Sent(gone.bytes);
    if (gone.error) return gone.error;
    if (!all) {
      waiter_.LookAgain();
      return {};
    }
  }
  return {};
}

void Server::ChangeClient() {
  instrument_.ForgetClient();
  waiter_.Carry(port_.Descriptor());
  clientEnded_ = false;
}

void Server::FollowClient() {
  if (clientEnded_ && !instrument_.HasUnsentOutput() && !instrument_.NextDue()) port_.HangUp();
  if (waiter_.Carries() && port_.Descriptor() < 0) ChangeClient();
}

// Nothing tells when the client has fetched the last byte, so this looks again and again for a short while.
void Server::AwaitFetching() {
  const Instant end = clock_.Now() + longestFetching;
  while (port_.Unfetched() && clock_.Now() < end) {
    if (waiter_.Wait({}, fetchingStep).signals && EndedBySignal()) return;
  }
}

}  // namespace quarlin::instrument
