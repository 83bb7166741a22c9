// SPDX-License-Identifier: GPL-3.0-or-later
// What the two cursors of a plot tell: the values there, their difference, and the mean between them.
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "ui/plot/curve_set.h"

namespace quarlin {

// The mean of a stretch of a series, taken in pieces, so that nobody waits for four million points.
class MeanBetween {
 public:
  // Points of `series` within `time`.
  MeanBetween(const Series& series, Span time);

  // Takes some more, also of points that came meanwhile; false when it is through.
  bool TakeMore(std::size_t most);
  // Of the values so far; nothing where there are none.
  std::optional<double> Mean() const;

 private:
  const Series& series_;
  double to_;
  std::uint64_t next_;  // counted from the first point there ever was, as old ones may leave meanwhile
  std::size_t count_ = 0;
  double mean_ = 0;
};

// A row for each visible curve.
struct CursorRow {
  QString title;
  std::optional<double> first;  // nothing for a gap
  std::optional<double> second;
  std::optional<double> mean;  // nothing while it is being taken
  double step = 1;             // what two values differ in that the plot tells apart; says how many digits
};

// As a table in rich text.
QString CursorTable(Span times, PlotTimes kind, double timeStep, const std::vector<CursorRow>& rows);

// For `step`: the power of ten that a span of an axis is read to.
double ReadingStep(const Span& span);

}  // namespace quarlin
