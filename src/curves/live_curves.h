// SPDX-License-Identifier: GPL-3.0-or-later
// The numbers of a running test as curves: each answer of the run record gives a point of each curve, at the
// time at which it was complete. A request without a good answer leaves a gap and a mark.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "curves/filtered_curves.h"
#include "data/mark.h"
#include "exchange/run_record.h"

namespace quarlin {

class LiveCurves : private RunListener {
 public:
  static constexpr std::size_t mostMarks = 100'000;  // beyond them the oldest leave

  // The record outlives it. Nothing is read from it, and nothing costs, until SetOn.
  explicit LiveCurves(RunRecord& record) : record_(record) {}
  ~LiveCurves() override { SetOn(false); }

  Hook<void()> OnBegan;   // other curves: a new run, or another rule
  Hook<void()> OnPoints;  // points or marks came
  Hook<void(std::string_view)> OnTold;

  // Follows the record from now on, or no longer. What the record has kept since the last time is made up
  // for; where another run has begun meanwhile, the curves begin anew.
  void SetOn(bool on);
  bool On() const { return on_; }

  // Begins anew with what the record has kept. Throws std::invalid_argument where a rule cannot be used; the
  // curves before then stay.
  void SetRules(const std::vector<NumberRule>& rules, bool parserOutput);
  void SetFilter(const FilterChoice& choice);

  const FilteredCurves& Set() const { return set_; }
  const std::deque<Mark>& Marks() const { return marks_; }
  std::uint64_t MarksEver() const { return marksEver_; }  // since the run began, also those that left

  // The last value of the first curve, behind the filter or without one; nothing before the first number.
  std::optional<double> LastValue() const { return lastValue_; }
  std::uint64_t WithoutNumber() const { return withoutNumber_; }  // answers that gave no curve a point

  // The exchange whose answer was complete nearest to `time`; nothing where none is kept.
  const ExchangeRecord* ExchangeAt(double time) const;

 private:
  void RunBegan() override;
  void ExchangeChanged(const ExchangeRecord& exchange) override;

  void BeginAnew();
  void CatchUp();
  void Take(const ExchangeRecord& exchange);
  void TakeText(double time, std::string_view text);
  void TakeMark(double time, const ExchangeRecord& exchange);
  void Append(std::size_t curve, Point point);
  double SecondsAt(Instant instant) const;
  const Series& First() const;  // behind the filter or without one

  RunRecord& record_;
  bool on_ = false;
  bool parserOutput_ = false;
  std::vector<NumberReader> readers_;
  FilteredCurves set_;
  std::deque<Mark> marks_;
  std::uint64_t marksEver_ = 0;
  Instant runBegan_{};       // the run that they are of
  std::uint64_t taken_ = 0;  // the last exchange that was looked at
  std::optional<double> lastValue_;
  std::uint64_t withoutNumber_ = 0;
};

}  // namespace quarlin
