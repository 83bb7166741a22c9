// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/answer_wait.h"

#include <fmt/format.h>

#include <utility>

namespace quarlin {

AnswerWait::AnswerWait(EventLoop& loop, Exchange& exchange)
    : loop_(loop),
      exchange_(exchange),
      timeAlarm_(loop, [this] { TimeIsUp(); }),
      tellAlarm_(loop, [this] { Tell(); }) {
  exchange_.Record().Follow(*this);
}

AnswerWait::~AnswerWait() {
  exchange_.Record().Leave(*this);
}

void AnswerWait::Begin(Duration atMost, std::function<void(const WaitEnd&)> ended) {
  Cancel();
  number_ = exchange_.AwaitByHand();
  atMost_ = atMost;
  ended_ = std::move(ended);
  if (atMost > Duration::zero()) timeAlarm_.At(loop_.Now() + atMost);
}

void AnswerWait::Cancel() {
  const std::uint64_t number = std::exchange(number_, 0);
  if (number != 0 && !end_) exchange_.EndWaitByHand(number);
  end_.reset();
  timeAlarm_.Cancel();
  tellAlarm_.Cancel();
}

void AnswerWait::RunBegan() {
  number_ = 0;
  Cancel();
}

// The record must not change while it tells; what follows an answer may send. The checksum has its say last.
void AnswerWait::ExchangeChanged(const ExchangeRecord& exchange) {
  if (exchange.number != number_ || !exchange.completed) return;
  end_ = WaitEnd{exchange.Failed() ? WaitEnd::How::Objected : WaitEnd::How::Answered, number_,
                 exchange.Latency()};
  timeAlarm_.Cancel();
  tellAlarm_.At(loop_.Now());
}

// What has arrived has come in time.
void AnswerWait::TimeIsUp() {
  const std::uint64_t number = number_;
  exchange_.Hooks.takeArrivals();
  if (number_ != number || end_) return;
  end_ = WaitEnd{WaitEnd::How::TimedOut, number_};
  const std::string wanted = fmt::format("an answer within {} ms", atMost_ / std::chrono::milliseconds(1));
  exchange_.TimeOutByHand(number_, {Verdict::TimeOut, "no answer", wanted, "no answer"});
  Tell();
}

void AnswerWait::Tell() {
  const WaitEnd end = *std::exchange(end_, std::nullopt);
  number_ = 0;
  std::exchange(ended_, nullptr)(end);
}

}  // namespace quarlin
