// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/latency_histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string_view>

namespace quarlin {
namespace {

using std::chrono::hours;
using std::chrono::nanoseconds;
using namespace std::chrono_literals;

// The value of that rank among the sorted ones: what the histogram may miss by 1 %.
nanoseconds Exact(const std::vector<nanoseconds>& sorted, double fraction) {
  const auto rank = static_cast<std::size_t>(std::ceil(fraction * static_cast<double>(sorted.size())));
  return sorted[std::max<std::size_t>(rank, 1) - 1];
}

struct Distribution {
  std::string_view name;
  int count;
  std::function<double(std::mt19937_64&)> nanoseconds;
};

TEST(LatencyHistogram, QuantilesAreWithinOnePercentOfTheSortedTimes) {
  using Random = std::mt19937_64;
  const std::vector<Distribution> distributions{
      {"one", 1, [](Random&) { return 12'345'678.0; }},
      {"nanoseconds", 2000, [](Random& r) { return std::uniform_real_distribution(0.0, 300.0)(r); }},
      {"uniform", 20'000, [](Random& r) { return std::uniform_real_distribution(1e6, 2e7)(r); }},
      {"long tail", 20'000, [](Random& r) { return std::lognormal_distribution(15.0, 2.0)(r); }},
      {"far apart", 999, [](Random& r) { return r() % 100 < 95 ? 1e5 : 3e10; }},
      {"powers of two", 500, [](Random& r) { return std::exp2(static_cast<double>(r() % 46)); }},
      {"around one", 3000, [](Random& r) { return std::exp2(static_cast<double>(r() % 46)) - 1; }},
  };
  for (const Distribution& distribution : distributions) {
    SCOPED_TRACE(distribution.name);
    std::mt19937_64 random(7);
    LatencyHistogram histogram;
    std::vector<nanoseconds> times;
    double sum = 0;
    for (int i = 0; i < distribution.count; ++i) {
      times.push_back(nanoseconds(static_cast<std::int64_t>(distribution.nanoseconds(random))));
      sum += static_cast<double>(times.back().count());
      histogram.Add(times.back());
    }
    std::sort(times.begin(), times.end());
    EXPECT_EQ(histogram.Count(), times.size());
    EXPECT_EQ(histogram.Least(), times.front());
    EXPECT_EQ(histogram.Greatest(), times.back());
    EXPECT_NEAR(static_cast<double>(nanoseconds(histogram.Mean()).count()), sum / distribution.count, 1);
    for (const double fraction : {0.0, 0.001, 0.05, 0.25, 0.5, 0.9, 0.95, 0.99, 0.999, 1.0}) {
      const auto exact = static_cast<double>(Exact(times, fraction).count());
      EXPECT_NEAR(static_cast<double>(nanoseconds(histogram.Quantile(fraction)).count()), exact, exact * 0.01)
          << fraction;
    }
  }
}

TEST(LatencyHistogram, WhatIsOutOfItsRangeIsHeldAtTheEnds) {
  struct Row {
    Duration added;
    Duration held;
  };
  constexpr nanoseconds longest((std::int64_t{1} << 47) - 1);
  for (const Row& row : {Row{-5ms, 0ns}, Row{0ns, 0ns}, Row{1ns, 1ns}, Row{longest, longest},
                         Row{longest + 1ns, longest}, Row{Duration::max(), longest}}) {
    LatencyHistogram histogram;
    histogram.Add(row.added);
    EXPECT_EQ(histogram.Least(), row.held);
    EXPECT_EQ(histogram.Greatest(), row.held);
    for (const double fraction : {-1.0, 0.0, 0.5, 1.0, 2.0}) {
      EXPECT_EQ(histogram.Quantile(fraction), row.held) << fraction;
    }
  }
  EXPECT_GT(longest, hours(39));
}

TEST(LatencyHistogram, WithoutAnyTimeEverythingIsZeroAlsoAfterClear) {
  LatencyHistogram histogram;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(histogram.Count(), 0U);
    for (const Duration time :
         {histogram.Least(), histogram.Greatest(), histogram.Mean(), histogram.Quantile(0.5)}) {
      EXPECT_EQ(time, Duration::zero());
    }
    histogram.Add(3s);
    histogram.Add(5s);
    histogram.Clear();
  }
  histogram.Add(2ms);  // the least one, though shorter ones than 5 s were there before
  EXPECT_EQ(histogram.Least(), 2ms);
  EXPECT_EQ(histogram.Greatest(), 2ms);
}

}  // namespace
}  // namespace quarlin
