// What is said of a stretch of measured values. Sound also where a small deviation stands on a large offset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "data/series.h"

namespace quarlin {

// Gaps do not count. What too few values cannot say is missing: everything of none, the deviation, drift and
// repeatability of one.
struct Statistics {
  std::size_t count = 0;
  std::optional<double> mean;
  std::optional<double> standardDeviation;  // n - 1
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::optional<double> peakToPeak;
  std::optional<double> median;         // of an even count the middle between the two
  std::optional<double> driftPerHour;   // slope of the straight line of least squares; times are seconds
  std::optional<double> repeatability;  // deviation of the settled part
  std::size_t settledFrom = 0;          // index of its first point, see SettledFrom
};

Statistics Describe(std::span<const Point> points);

// Where a step has settled: the first point from which on ... (the contract of the rule that was chosen).
std::size_t SettledFrom(std::span<const Point> points);

struct Histogram {
  double from = 0;   // lower edge of the first class
  double width = 0;  // of each
  std::vector<std::size_t> counts;
};

// Classes of equal width between minimum and maximum, the upper edge belongs to the last; their number by
// the Freedman-Diaconis rule, within 1 and 200. Empty for no values.
Histogram HistogramOf(std::span<const Point> points);

struct Spectrum {
  double step = 0;                 // Hz between two lines
  std::vector<double> amplitudes;  // single-sided, in the unit of the values; [0] is 0 Hz, the mean taken out
};

// By a Hann window over evenly spaced values at `rate` Hz; gaps are bridged by straight lines. The last 2^20
// values at most. Empty below 8 values.
Spectrum SpectrumOf(std::span<const Point> points, double rate);

}  // namespace quarlin
