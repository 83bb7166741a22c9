// SPDX-License-Identifier: GPL-3.0-or-later
// What is said of a stretch of measured values. Sound also where a small deviation stands on a large offset.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "data/series.h"

namespace quarlin {

// Gaps do not count, nor does what is not finite. What too few values cannot say is missing: everything of
// none, the deviation, drift and repeatability of one. So is what is beyond a double.
struct Statistics {
  std::size_t count = 0;
  std::optional<double> mean;
  std::optional<double> standardDeviation;  // n - 1
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::optional<double> peakToPeak;
  std::optional<double> median;         // of an even count the middle between the two
  std::optional<double> driftPerHour;   // slope of the straight line of least squares; times are seconds
  std::optional<double> repeatability;  // deviation (n - 1) of the settled part
  std::size_t settledFrom = 0;          // index of its first point, see SettledFrom
};

Statistics Describe(std::span<const Point> points);

// Where a step has settled. The last quarter of the values (at least 8 of them) is taken as settled: its
// median is the level that was reached, and 4 of its deviations (1.4826 times the median distance from that
// level; where that is 0, the ordinary deviation) are what a settled value may differ from it. Settled is
// what follows the last two values in a row that both differ by more, so a single stray value unsettles
// nothing. The index of the first such point; points.size() where the last two values still stray.
std::size_t SettledFrom(std::span<const Point> points);

struct Histogram {
  double from = 0;   // lower edge of the first class
  double width = 0;  // of each; 0 where all values are equal
  std::vector<std::size_t> counts;
};

// Classes of equal width between minimum and maximum, the upper edge belongs to the last; their number by
// the Freedman-Diaconis rule, where half of the values are equal by the one of Sturges, within 1 and 200.
// Empty for no values.
Histogram HistogramOf(std::span<const Point> points);

struct Spectrum {
  double step = 0;                 // Hz between two lines; the last one is at half the rate
  std::vector<double> amplitudes;  // single-sided, in the unit of the values; [0] is 0 Hz, the mean taken out
};

// By a Hann window over evenly spaced values at `rate` Hz, filled up with zeros to a power of two: a sine
// shows its amplitude within 15 % wherever it lies between two lines. Gaps are bridged by straight lines,
// those at the ends left out. The last 2^20 values at most. Empty below 8 values.
Spectrum SpectrumOf(std::span<const Point> points, double rate);

}  // namespace quarlin
