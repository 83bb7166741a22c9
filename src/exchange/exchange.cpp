// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/exchange.h"

#include <limits>
#include <utility>

namespace quarlin {

Exchange::Exchange(EventLoop& loop, RunControls& controls, RunRecord& record)
    : loop_(loop), controls_(controls), record_(record), requests_(controls), answerAlarm_(loop, [this] {
        AnswerTimeIsUp();
      }) {}

void Exchange::BeginRun() {
  ++run_;
  running_ = true;
  anyLeft_ = false;
  // A request that came before the run may be what "Send on request" waits for.
  const bool pending = state_.AnswerPending;
  state_ = {};
  state_.AnswerPending = pending;
  late_ = runEndsAfter_ = false;
  awaited_ = awaitedByHand_ = handled_ = errAnswer_ = 0;
  answerAlarm_.Cancel();
  requests_.Begin();
  record_.Begin();
}

void Exchange::EndRun(bool completed) {
  EndWait();
  running_ = false;
  if (completed) requests_.Complete();
  runEndsAfter_ = handled_ != 0;  // its last verdicts are still to come
  if (!runEndsAfter_) EndRecord();
}

void Exchange::RequestSent(std::string_view request, bool ofRun, std::optional<std::uint64_t> displayLine) {
  const std::uint64_t number = record_.AddRequest(request, displayLine);
  if (!ofRun || !running_) return;
  awaited_ = number;
  errAnswer_ = 0;
  late_ = false;
  state_.WaitingAnswer = true;
  waitingSince_ = record_.Find(number)->began;
  const std::int32_t milliseconds = controls_.txtAnswerTime.Integer();
  if (controls_.WaitsForAnswer() && milliseconds > 0) {
    answerAlarm_.At(waitingSince_ + std::chrono::milliseconds(milliseconds));
  }
}

std::uint64_t Exchange::RequestNotSent(std::string_view request, std::string_view failure,
                                       std::optional<std::uint64_t> displayLine) {
  const std::uint64_t number = record_.AddRequest(request, displayLine);
  if (failure.empty()) {
    record_.CallOff(number);
  } else {
    record_.Say(number, {Verdict::NotSent, std::string(failure)});
    record_.Close(number);
  }
  return number;
}

std::uint64_t Exchange::TextNotSent(std::string_view text, std::string_view failure) {
  const std::uint64_t number = record_.AddOther();
  record_.SetRequest(number, text);
  record_.Say(number, {Verdict::NotSent, std::string(failure)});
  record_.Close(number);
  return number;
}

void Exchange::EndWaitByHand(std::uint64_t number) {
  if (awaitedByHand_ == number) awaitedByHand_ = 0;
}

void Exchange::TimeOutByHand(std::uint64_t number, Finding finding) {
  EndWaitByHand(number);
  record_.Say(number, std::move(finding));
  record_.Close(number);
  late_ = true;
}

// Where answers are waited for, one belongs to the request that is; else to the oldest that has none.
std::uint64_t Exchange::TakeRequestOfAnswer() {
  if (awaitedByHand_ != 0 && !(running_ && controls_.WaitsForAnswer())) {
    return std::exchange(awaitedByHand_, 0);
  }
  if (!running_ || !controls_.WaitsForAnswer()) return record_.OldestUnanswered().value_or(0);
  return std::exchange(awaited_, 0);
}

// The number of what is said of an answer that has come, and whether it was late.
Exchange::Arrived Exchange::AnswerHasCome(std::string_view text, Instant firstByte) {
  Arrived arrived{TakeRequestOfAnswer(), std::exchange(late_, false)};
  const bool unsolicited = arrived.number == 0;
  arrived.late = arrived.late && unsolicited;
  if (unsolicited) arrived.number = record_.AddOther();
  record_.Received(arrived.number, text, firstByte);
  if (unsolicited) record_.Say(arrived.number, {Verdict::Unsolicited, arrived.late ? "late" : ""});
  return arrived;
}

bool Exchange::BeginString(std::string_view text, Instant firstByte) {
  const Arrived arrived = AnswerHasCome(text, firstByte);
  handled_ = arrived.number;
  return arrived.late;
}

void Exchange::Accept(std::string_view parsed) {
  record_.Accepted(handled_, parsed);
  state_.AnswerPending = true;
  state_.TimeoutCount = 0;
  ClearWait();
}

void Exchange::EndString() {
  record_.Close(std::exchange(handled_, 0));
  if (std::exchange(runEndsAfter_, false)) EndRecord();
}

void Exchange::EndRecord() {
  record_.End();
  Hooks.runRecorded();
}

std::uint64_t Exchange::Fault(Finding finding) {
  std::uint64_t number = finding.verdict == Verdict::TimeOut || handled_ == 0 ? awaited_ : handled_;
  if (number == 0) number = record_.AddOther();
  record_.Say(number, std::move(finding));
  if (number != handled_) record_.Close(number);
  ClearWait();
  return number;
}

bool Exchange::TakeTimeOut() {
  if (!MustWait() || !state_.AnswerTimedOut) return false;
  state_.AnswerTimedOut = false;
  late_ = true;
  return true;
}

std::int16_t Exchange::CountTimeOut() {
  if (state_.TimeoutCount < std::numeric_limits<std::int16_t>::max()) ++state_.TimeoutCount;
  return state_.TimeoutCount;
}

void Exchange::ErrSeen(std::string_view text, Instant firstByte) {
  answerAlarm_.Cancel();
  state_.AnswerTimedOut = false;
  errAnswer_ = AnswerHasCome(text, firstByte).number;
  record_.Say(errAnswer_, {Verdict::Err});
  record_.Close(errAnswer_);
}

void Exchange::ErrEnded() {
  if (std::exchange(errAnswer_, 0) != 0) ClearWait();
}

void Exchange::EndWait() {
  record_.Close(awaited_);
  errAnswer_ = 0;
  ClearWait();
}

void Exchange::ClearWait() {
  awaited_ = 0;
  state_.WaitingAnswer = false;
  state_.AnswerTimedOut = false;  // a later request must not inherit it
  answerAlarm_.Cancel();
  Hooks.waitEnded();
}

void Exchange::AnswerTimeIsUp() {
  Hooks.takeArrivals();
  if (!state_.WaitingAnswer || errAnswer_ != 0) return;
  state_.AnswerTimedOut = true;
  Hooks.reportTimeOut();
}

}  // namespace quarlin
