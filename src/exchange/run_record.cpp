// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/run_record.h"

#include <algorithm>
#include <utility>

namespace quarlin {
namespace {

void Keep(KeptText& kept, std::string_view text) {
  kept.bytes.assign(text.substr(0, RunRecord::keptBytes));
  kept.size = text.size();
}

// Gives the memory of a longer text back.
void Cut(std::string& text) {
  if (text.size() > RunRecord::keptBytes) text = text.substr(0, RunRecord::keptBytes);
}

}  // namespace

bool ExchangeRecord::Has(Verdict verdict) const {
  return std::any_of(findings.begin(), findings.end(),
                     [verdict](const Finding& finding) { return finding.verdict == verdict; });
}

bool ExchangeRecord::Failed() const {
  return std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return IsFailure(finding.verdict); });
}

std::optional<Duration> ExchangeRecord::Latency() const {
  if (!hasRequest || !completed) return std::nullopt;
  return std::max(*completed - began, Duration{});
}

void RunRecord::Follow(RunListener& listener) {
  listeners_.push_back(&listener);
}

void RunRecord::Leave(RunListener& listener) {
  std::erase(listeners_, &listener);
}

LocalTime RunRecord::WallClock(Instant instant) const {
  return beganAt_ + std::chrono::duration_cast<std::chrono::nanoseconds>(instant - began_);
}

const ExchangeRecord* RunRecord::Find(std::uint64_t number) const {
  if (number < FirstKept() || number > lastNumber_) return nullptr;
  return &exchanges_[(number - 1) % mostKept];
}

void RunRecord::Begin() {
  began_ = clock_.Now();
  beganAt_ = clock_.Local();
  ended_.reset();
  sums_ = {};
  latencies_.Clear();
  lastNumber_ = 0;
  oldestUnanswered_ = 1;
  firstFailures_.clear();
  lastFailures_.clear();
  for (RunListener* listener : listeners_) listener->RunBegan();
}

void RunRecord::End() {
  for (std::uint64_t number = FirstKept(); number <= lastNumber_; ++number) Close(number);
  if (!ended_) ended_ = clock_.Now();
}

// In the place and the memory of the oldest one, once there are enough.
ExchangeRecord& RunRecord::Add() {
  if (lastNumber_ >= mostKept) Close(FirstKept());
  const std::size_t place = lastNumber_ % mostKept;
  if (place == exchanges_.size()) exchanges_.emplace_back();
  ExchangeRecord& exchange = exchanges_[place];
  exchange.number = ++lastNumber_;
  exchange.hasRequest = exchange.ended = exchange.open = false;
  exchange.began = clock_.Now();
  exchange.firstByte.reset();
  exchange.completed.reset();
  exchange.findings.clear();
  exchange.displayLine.reset();
  for (KeptText* text : {&exchange.request, &exchange.answer, &exchange.parsed}) Keep(*text, {});
  return exchange;
}

std::uint64_t RunRecord::AddRequest(std::string_view request, std::optional<std::uint64_t> displayLine) {
  ExchangeRecord& exchange = Add();
  exchange.hasRequest = true;
  exchange.displayLine = displayLine;
  Keep(exchange.request, request);
  ++sums_.requests;
  ++sums_.sent;
  return exchange.number;
}

std::uint64_t RunRecord::AddOther() {
  return Add().number;
}

std::optional<std::uint64_t> RunRecord::OldestUnanswered() {
  oldestUnanswered_ = std::max(oldestUnanswered_, FirstKept());
  for (; oldestUnanswered_ <= lastNumber_; ++oldestUnanswered_) {
    const ExchangeRecord* exchange = Find(oldestUnanswered_);
    if (exchange->hasRequest && !exchange->ended) return oldestUnanswered_;
  }
  return std::nullopt;
}

ExchangeRecord* RunRecord::Unended(std::uint64_t number) {
  const ExchangeRecord* found = Find(number);
  return found == nullptr || found->ended ? nullptr : &exchanges_[(number - 1) % mostKept];
}

void RunRecord::SetRequest(std::uint64_t number, std::string_view request) {
  if (ExchangeRecord* exchange = Unended(number)) Keep(exchange->request, request);
}

void RunRecord::Received(std::uint64_t number, std::string_view answer, Instant firstByte) {
  ++sums_.received;
  ExchangeRecord* exchange = Unended(number);
  if (exchange == nullptr) return;
  Keep(exchange->answer, answer);
  exchange->firstByte = firstByte;
  exchange->completed = clock_.Now();
  if (const auto latency = exchange->Latency()) latencies_.Add(*latency);
}

void RunRecord::Accepted(std::uint64_t number, std::string_view parsed) {
  ++sums_.accepted;
  ExchangeRecord* exchange = Unended(number);
  if (exchange == nullptr) return;
  const KeptText& answer = exchange->answer;
  const bool same = parsed.size() == answer.size && parsed.substr(0, keptBytes) == answer.bytes;
  if (!same) Keep(exchange->parsed, parsed);
  if (exchange->hasRequest) Say(number, {Verdict::Answered});
}

void RunRecord::Say(std::uint64_t number, Finding finding) {
  ExchangeRecord* exchange = Unended(number);
  const Verdict verdict = finding.verdict;
  if (exchange == nullptr || exchange->Has(verdict)) return;
  for (std::string* text : {&finding.detail, &finding.expected, &finding.got}) Cut(*text);
  exchange->findings.push_back(std::move(finding));
  if (verdict == Verdict::NotSent && exchange->hasRequest) --sums_.sent;
  ++sums_.verdicts[static_cast<std::size_t>(verdict)];
  Tell(*exchange);
}

void RunRecord::Close(std::uint64_t number) {
  if (ExchangeRecord* exchange = Unended(number)) CloseExchange(*exchange);
}

void RunRecord::CallOff(std::uint64_t number) {
  ExchangeRecord* exchange = Unended(number);
  if (exchange == nullptr) return;
  if (exchange->hasRequest) --sums_.sent;
  CloseExchange(*exchange);
}

void RunRecord::CloseExchange(ExchangeRecord& exchange) {
  if (exchange.ended) return;
  exchange.ended = true;
  const bool failed = exchange.Failed();
  exchange.open = exchange.findings.empty();
  if (exchange.hasRequest) ++(failed ? sums_.failed : exchange.open ? sums_.open : sums_.good);
  if (failed) KeepFailure(exchange);
  Tell(exchange);
}

void RunRecord::KeepFailure(const ExchangeRecord& exchange) {
  if (firstFailures_.size() < mostKeptFailures) firstFailures_.push_back(exchange);
  lastFailures_.push_back(exchange);
  if (lastFailures_.size() > mostKeptFailures) lastFailures_.pop_front();
}

void RunRecord::Tell(const ExchangeRecord& exchange) {
  for (RunListener* listener : listeners_) listener->ExchangeChanged(exchange);
}

}  // namespace quarlin
