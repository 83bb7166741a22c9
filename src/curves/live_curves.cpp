// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/live_curves.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace quarlin {

void LiveCurves::SetOn(bool on) {
  if (on == on_) return;
  on_ = on;
  if (!on) {
    record_.Leave(*this);
    return;
  }
  record_.Follow(*this);
  const bool otherRun = record_.Began() != runBegan_;  // one began meanwhile
  if (otherRun) BeginAnew();
  CatchUp();
  otherRun ? OnBegan() : OnPoints();
}

void LiveCurves::SetRules(const std::vector<NumberRule>& rules, bool parserOutput) {
  std::vector<NumberReader> readers;
  std::vector<Series> curves;
  for (const NumberRule& rule : rules) {
    readers.emplace_back(rule);
    curves.emplace_back(rule.name);
  }
  readers_ = std::move(readers);
  parserOutput_ = parserOutput;
  set_.Set(std::move(curves));
  BeginAnew();
  if (on_) CatchUp();
  OnBegan();
}

void LiveCurves::SetFilter(const FilterChoice& choice) {
  set_.SetFilter(choice);
  lastValue_.reset();
  if (set_.Curves().empty()) return;
  const Series& shown = First();
  for (std::size_t i = shown.Size(); i-- > 0 && !lastValue_;) {
    if (const double value = shown.At(i).value; !std::isnan(value)) lastValue_ = value;
  }
}

void LiveCurves::RunBegan() {
  BeginAnew();
  OnBegan();
}

void LiveCurves::BeginAnew() {
  std::vector<Series> curves;
  for (const auto& curve : set_.Curves()) curves.emplace_back(curve->raw.name);
  set_.Set(std::move(curves));
  marks_.clear();
  marksEver_ = 0;
  lastValue_.reset();
  withoutNumber_ = 0;
  taken_ = 0;
  runBegan_ = record_.Began();
}

void LiveCurves::CatchUp() {
  for (std::uint64_t number = std::max(taken_ + 1, record_.FirstKept()); number <= record_.LastNumber();
       ++number) {
    if (const ExchangeRecord* exchange = record_.Find(number); exchange != nullptr && exchange->ended) {
      Take(*exchange);
    }
  }
}

void LiveCurves::ExchangeChanged(const ExchangeRecord& exchange) {
  if (!exchange.ended) return;
  Take(exchange);
  OnPoints();
}

void LiveCurves::Take(const ExchangeRecord& exchange) {
  taken_ = std::max(taken_, exchange.number);
  if (exchange.Failed() && exchange.hasRequest) {
    TakeMark(SecondsAt(exchange.completed.value_or(exchange.began)), exchange);
  } else if (exchange.completed && !exchange.Failed()) {
    const bool parsed = parserOutput_ && !exchange.parsed.bytes.empty();
    TakeText(SecondsAt(*exchange.completed), parsed ? exchange.parsed.bytes : exchange.answer.bytes);
  }
}

void LiveCurves::TakeText(double time, std::string_view text) {
  bool found = false;
  for (std::size_t i = 0; i < readers_.size(); ++i) {
    const auto number = readers_[i].Read(text);
    Append(i, {time, number ? number->value : gapValue});
    if (!number) continue;
    found = true;
    // An indicator may leave its unit out while the weight moves: the curve keeps it.
    const bool isUnit = !number->unit.empty() && number->unit.size() <= Series::longestUnit;
    if (isUnit) set_.SetUnit(i, number->unit);
  }
  if (!found) ++withoutNumber_;
}

void LiveCurves::TakeMark(double time, const ExchangeRecord& exchange) {
  const auto kind = exchange.Has(Verdict::TimeOut) ? MarkKind::TimeOut : MarkKind::WrongAnswer;
  marks_.push_back({time, kind, exchange.number});
  ++marksEver_;
  if (marks_.size() > mostMarks) marks_.pop_front();
  for (std::size_t i = 0; i < readers_.size(); ++i) Append(i, {time, gapValue});
}

void LiveCurves::Append(std::size_t curve, Point point) {
  if (set_.Append(curve, point)) OnTold("a curve holds 4 million points: the oldest leave from now on");
  if (curve == 0 && !std::isnan(point.value)) lastValue_ = First().At(First().Size() - 1).value;
}

const Series& LiveCurves::First() const {
  const auto& first = *set_.Curves().front();
  return first.filter ? first.filtered : first.raw;
}

double LiveCurves::SecondsAt(Instant instant) const {
  return std::chrono::duration<double>(instant - record_.Began()).count();
}

const ExchangeRecord* LiveCurves::ExchangeAt(double time) const {
  const ExchangeRecord* nearest = nullptr;
  double distance = 0;
  for (std::uint64_t number = record_.FirstKept(); number <= record_.LastNumber(); ++number) {
    const ExchangeRecord* exchange = record_.Find(number);
    if (exchange == nullptr || !exchange->completed) continue;
    const double away = std::abs(SecondsAt(*exchange->completed) - time);
    if (nearest == nullptr || away < distance) nearest = exchange, distance = away;
  }
  return nearest;
}

}  // namespace quarlin
