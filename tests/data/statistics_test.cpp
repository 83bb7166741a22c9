// SPDX-License-Identifier: GPL-3.0-or-later
// Figures of a stretch of values, above all where rounding is against them.

#include "data/statistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

namespace quarlin {
namespace {

std::vector<Point> PointsOf(const std::vector<double>& values) {
  std::vector<Point> points;
  points.reserve(values.size());
  for (const double value : values) points.push_back({static_cast<double>(points.size()), value});
  return points;
}

TEST(Statistics, ADeviationOf1OnAnOffsetOf1e9) {
  std::vector<double> values;
  values.reserve(1'000'000);
  for (int i = 0; i < 1'000'000; ++i)
    values.push_back(1e9 + (i % 2 == 0 ? 1 : -1) + (i % 100 == 50 ? 0.5 : 0));
  const Statistics statistics = Describe(PointsOf(values));
  EXPECT_EQ(statistics.mean, 1e9 + 0.005);
  // By hand: the mean of the squares is 1 + 0.01 * (2 * 0.5 + 0.25), the square of the mean 0.005^2.
  EXPECT_NEAR(*statistics.standardDeviation, std::sqrt((1.0125 - 0.000025) * 1e6 / 999'999), 1e-12);
  EXPECT_EQ(statistics.median, 1e9);
  EXPECT_EQ(statistics.peakToPeak, 2.5);
}

TEST(Statistics, SaysOnlyWhatTheValuesSay) {
  const Statistics none = Describe(PointsOf({gapValue, gapValue}));
  EXPECT_EQ(none.count, 0u);
  EXPECT_FALSE(none.mean || none.median || none.minimum || none.standardDeviation || none.driftPerHour);
  const Statistics one = Describe(PointsOf({gapValue, 7.25}));
  EXPECT_EQ(one.mean, 7.25);
  EXPECT_EQ(one.median, 7.25);
  EXPECT_FALSE(one.standardDeviation || one.driftPerHour || one.repeatability);
  const Statistics line =
      Describe(std::vector<Point>{{1e9, 5}, {1e9 + 1800, 6}, {1e9 + 3600, 7}, {1e9 + 5400, 8}});
  EXPECT_EQ(line.driftPerHour, 2);
  EXPECT_EQ(line.median, 6.5);
  EXPECT_FALSE(Describe(std::vector<Point>{{3, 1}, {3, 2}}).driftPerHour);
  const Statistics huge = Describe(PointsOf({-1.7e308, 1.7e308}));
  EXPECT_FALSE(huge.standardDeviation || huge.peakToPeak);
}

TEST(Statistics, FindsWhereAStepHasSettled) {
  std::mt19937 chance(1);
  std::normal_distribution<double> noise(0, 0.01);
  std::vector<double> values;
  values.reserve(1000);
  for (int i = 0; i < 1000; ++i)
    values.push_back((i < 100 ? 0 : 10 - 10 * std::exp((100 - i) / 20.0)) + noise(chance));
  values[400] = gapValue;
  const std::size_t undisturbed = SettledFrom(PointsOf(values));
  EXPECT_NEAR(static_cast<double>(undisturbed), 100 + 20 * std::log(10 / 0.04), 10);
  values[500] = 99;  // a single stray value, between gaps
  values[499] = values[501] = gapValue;
  EXPECT_EQ(SettledFrom(PointsOf(values)), undisturbed);
  values[499] = 99;
  EXPECT_EQ(SettledFrom(PointsOf(values)), 501u);
  EXPECT_EQ(SettledFrom(PointsOf({1, 2, 3, 7, 7, 7, 7, 7, 7, 7, 7})), 3u);
  EXPECT_EQ(SettledFrom(PointsOf(std::vector<double>(50, 3.5))), 0u);
  EXPECT_EQ(SettledFrom({}), 0u);
}

struct HistogramCase {
  std::vector<double> values;
  double from;
  double width;
  std::vector<std::size_t> counts;
};

TEST(Histogram, EveryValueHasAClass) {
  const HistogramCase cases[] = {
      {{}, 0, 0, {}},
      {{gapValue, 3, 3}, 3, 0, {2}},
      {{0, 1, 2, 3, 4, 5, 6, 8}, 0, 4, {4, 4}},  // the highest value in the last class
      {{1, 1, 1, 1, 1, 1, 1, 5}, 1, 1, {7, 0, 0, 1}},
      {{-1.7e308, 1.7e308}, -1.7e308, std::numeric_limits<double>::infinity(), {2}},
  };
  for (const HistogramCase& row : cases) {
    const Histogram histogram = HistogramOf(PointsOf(row.values));
    EXPECT_EQ(histogram.counts, row.counts);
    EXPECT_EQ(histogram.from, row.from);
    EXPECT_EQ(histogram.width, row.width);
  }
  std::vector<double> stray(10'000, 0.0);
  std::iota(stray.begin(), stray.end(), 0.0);
  stray.push_back(1e12);
  EXPECT_EQ(HistogramOf(PointsOf(stray)).counts.size(), 200u);
}

TEST(Spectrum, ASineShowsItsFrequencyAndItsAmplitude) {
  for (const double frequency : {12.5, 12.7, 20.0, 41.3}) {
    std::vector<double> values;
    values.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
      values.push_back(1e6 + 3 * std::cos(2 * std::numbers::pi * frequency * i / 100));
    }
    values[0] = values[999] = gapValue;
    const Spectrum spectrum = SpectrumOf(PointsOf(values), 100);
    ASSERT_EQ(spectrum.amplitudes.size(), 513u);
    const auto highest = std::max_element(spectrum.amplitudes.begin(), spectrum.amplitudes.end());
    EXPECT_NEAR(static_cast<double>(highest - spectrum.amplitudes.begin()) * spectrum.step, frequency, 0.06);
    EXPECT_NEAR(*highest, 3, 0.45);
    EXPECT_LT(spectrum.amplitudes[10], 0.01);
  }
  EXPECT_TRUE(SpectrumOf(PointsOf({1, 2, 3, 4, 5, 6, 7, gapValue}), 1).amplitudes.empty());
}

}  // namespace
}  // namespace quarlin
