// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "data/compensated_sum.h"

namespace quarlin {
namespace {

constexpr double secondsPerHour = 3600;
constexpr std::size_t fewestSettled = 8;
constexpr double deviationsApart = 4;
constexpr double deviationPerMedianDistance = 1.4826;  // for a normal distribution
constexpr std::size_t mostClasses = 200;

std::vector<double> ValuesOf(std::span<const Point> points) {
  std::vector<double> values;
  values.reserve(points.size());
  for (const Point& point : points) {
    if (std::isfinite(point.value)) values.push_back(point.value);
  }
  return values;
}

double MeanOf(std::span<const double> values) {
  CompensatedSum sum;
  for (const double value : values) sum.Add(value);
  return sum.MeanOver(static_cast<double>(values.size()));
}

// Requires two values. What the rounding of the mean adds is taken out again.
double DeviationOf(std::span<const double> values) {
  const auto count = static_cast<double>(values.size());
  const double mean = MeanOf(values);
  CompensatedSum sum;
  CompensatedSum squares;
  for (const double value : values) {
    sum.Add(value - mean);
    squares.Add((value - mean) * (value - mean));
  }
  const double variance = (squares.Value() - sum.Value() * sum.Value() / count) / (count - 1);
  return std::sqrt(std::max(variance, 0.0));
}

// Puts the value that sorting would bring to `place` there, none above it before, none below it behind.
double& Nth(std::vector<double>& values, std::size_t place) {
  const auto nth = values.begin() + static_cast<std::ptrdiff_t>(place);
  std::nth_element(values.begin(), nth, values.end());
  return *nth;
}

double MedianOf(std::vector<double> values) {
  const std::size_t half = values.size() / 2;
  const double upper = Nth(values, half);
  if (values.size() % 2 == 1) return upper;
  const double lower = *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(half));
  return std::midpoint(lower, upper);
}

// Sums of differences from the middle: an offset of the times or the values costs no digits.
std::optional<double> DriftPerHour(std::span<const Point> points, double mean) {
  CompensatedSum times;
  std::size_t count = 0;
  for (const Point& point : points) {
    if (!std::isfinite(point.value)) continue;
    times.Add(point.time);
    ++count;
  }
  const double middle = times.MeanOver(static_cast<double>(count));
  CompensatedSum both;
  CompensatedSum spread;
  for (const Point& point : points) {
    if (!std::isfinite(point.value)) continue;
    both.Add((point.time - middle) * (point.value - mean));
    spread.Add((point.time - middle) * (point.time - middle));
  }
  if (!(spread.Value() > 0)) return std::nullopt;
  return both.Value() / spread.Value() * secondsPerHour;
}

// The level that values have reached, and how far a settled one may be from it.
struct Level {
  double value;
  double reach;
  bool Holds(double other) const { return std::abs(other - value) <= reach; }
};

Level LevelOf(const std::vector<double>& settled) {
  const double level = MedianOf(settled);
  std::vector<double> distances;
  distances.reserve(settled.size());
  for (const double value : settled) distances.push_back(std::abs(value - level));
  double deviation = deviationPerMedianDistance * MedianOf(std::move(distances));
  if (deviation == 0 && settled.size() > 1) deviation = DeviationOf(settled);
  return {level, deviationsApart * deviation};
}

void LeaveOutOverflows(Statistics& statistics) {
  for (auto* figure : {&statistics.mean, &statistics.standardDeviation, &statistics.peakToPeak,
                       &statistics.driftPerHour, &statistics.repeatability}) {
    if (*figure && !std::isfinite(**figure)) figure->reset();
  }
}

std::size_t NumberOfClasses(std::vector<double> values, double range) {
  if (!(range > 0) || !std::isfinite(range)) return 1;
  const auto count = static_cast<double>(values.size());
  const double upperQuartile = Nth(values, values.size() * 3 / 4);
  const double middleHalf = upperQuartile - Nth(values, values.size() / 4);
  const double classes = middleHalf > 0 ? range / (2 * middleHalf / std::cbrt(count)) : std::log2(count) + 1;
  return static_cast<std::size_t>(std::clamp(std::ceil(classes), 1.0, static_cast<double>(mostClasses)));
}

}  // namespace

Statistics Describe(std::span<const Point> points) {
  const std::vector<double> values = ValuesOf(points);
  Statistics statistics;
  statistics.count = values.size();
  if (values.empty()) return statistics;
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  statistics.mean = MeanOf(values);
  statistics.minimum = *least;
  statistics.maximum = *most;
  statistics.peakToPeak = *most - *least;
  statistics.median = MedianOf(values);
  statistics.settledFrom = SettledFrom(points);
  if (values.size() < 2) return statistics;
  statistics.standardDeviation = DeviationOf(values);
  statistics.driftPerHour = DriftPerHour(points, *statistics.mean);
  const std::vector<double> settled = ValuesOf(points.subspan(statistics.settledFrom));
  if (settled.size() >= 2) statistics.repeatability = DeviationOf(settled);
  LeaveOutOverflows(statistics);
  return statistics;
}

std::size_t SettledFrom(std::span<const Point> points) {
  const std::vector<double> values = ValuesOf(points);
  const std::size_t last = std::min(values.size(), std::max(values.size() / 4, fewestSettled));
  if (last == 0) return 0;
  const Level level = LevelOf({values.end() - static_cast<std::ptrdiff_t>(last), values.end()});
  std::optional<std::size_t> stray;  // the value looked at before, where it strays
  for (std::size_t i = points.size(); i-- > 0;) {
    if (!std::isfinite(points[i].value)) continue;
    if (level.Holds(points[i].value)) {
      stray.reset();
    } else if (stray) {
      return *stray + 1;
    } else {
      stray = i;
    }
  }
  return 0;
}

Histogram HistogramOf(std::span<const Point> points) {
  const std::vector<double> values = ValuesOf(points);
  if (values.empty()) return {};
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  const std::size_t classes = NumberOfClasses(values, *most - *least);
  Histogram histogram{*least, (*most - *least) / static_cast<double>(classes),
                      std::vector<std::size_t>(classes)};
  for (const double value : values) {
    const double place = classes > 1 ? (value - histogram.from) / histogram.width : 0;
    ++histogram.counts[static_cast<std::size_t>(std::min(place, static_cast<double>(classes - 1)))];
  }
  return histogram;
}

}  // namespace quarlin
