// SPDX-License-Identifier: GPL-3.0-or-later
// A stretch of an axis and what moving and zooming make of it; what the plot shows is three of them.
#pragma once

namespace quarlin {

struct Span {
  double from = 0;
  double to = 1;

  double Size() const { return to - from; }
  bool Holds(double value) const { return from <= value && value <= to; }
  bool operator==(const Span&) const = default;
};

// Shows `factor` times as much (0.5: half), and what stood at `place` stays there. The same span where the
// result would be finer than numbers are, or beyond them.
Span Zoomed(Span span, double place, double factor);

// By `shares` of its own size, to the right where positive.
Span Moved(Span span, double shares);

// From `low` to `high` with `share` of that as room at either end. Values that are all the same, or none,
// get a span around them.
Span Around(double low, double high, double share);

// What a plot's times are.
enum class PlotTimes { Seconds, Rows };

// What is in sight.
struct PlotView {
  Span time{0, 10};
  Span values;
  Span secondValues;
  bool operator==(const PlotView&) const = default;
};

}  // namespace quarlin
