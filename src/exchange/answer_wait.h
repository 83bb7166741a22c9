// SPDX-License-Identifier: GPL-3.0-or-later
// Waits for the answer to a request that was sent by hand: what fires one command after the other stands on
// it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "controls/alarms.h"
#include "exchange/exchange.h"

namespace quarlin {

// How such a wait came to its end.
struct WaitEnd {
  enum class How {
    Answered,
    Objected,  // an answer came, and a check objects to it
    TimedOut
  };
  How how;
  std::uint64_t number;               // of the request in the record
  std::optional<Duration> latency{};  // of an answer
};

class AnswerWait : private RunListener {
 public:
  AnswerWait(EventLoop& loop, Exchange& exchange);
  ~AnswerWait() override;

  // The last request is waited for, at most so long; zero waits for ever. `ended` is called once, from the
  // event loop; never after a Cancel or the beginning of a run, which is nobody's answer.
  void Begin(Duration atMost, std::function<void(const WaitEnd&)> ended);
  void Cancel();
  bool Waiting() const { return number_ != 0; }

 private:
  void RunBegan() override;
  void ExchangeChanged(const ExchangeRecord& exchange) override;
  void TimeIsUp();
  void Tell();

  EventLoop& loop_;
  Exchange& exchange_;
  std::uint64_t number_ = 0;  // in the record, 0 for none
  Duration atMost_{};
  std::function<void(const WaitEnd&)> ended_;
  std::optional<WaitEnd> end_;  // known, and not told yet
  Alarm timeAlarm_;
  Alarm tellAlarm_;
};

}  // namespace quarlin
