// SPDX-License-Identifier: GPL-3.0-or-later
// How long a million points take: each kind of filter, one way, and what is said of them.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "data/filter.h"
#include "data/filter_response.h"
#include "data/statistics.h"

namespace quarlin {
namespace {

constexpr std::size_t count = 1'000'000;

std::vector<double> Noise() {
  std::mt19937_64 chance(1);
  std::normal_distribution<double> normal(1e3, 1);
  std::vector<double> values(count);
  for (double& value : values) value = normal(chance);
  return values;
}

// A step between two constant levels: filters that forget slowly work on ever smaller numbers.
std::vector<double> Step() {
  std::vector<double> values(count, 0);
  std::fill(values.begin() + 10, values.begin() + 1000, 100);
  return values;
}

void FilterAMillion(benchmark::State& state, const FilterSettings& settings,
                    std::vector<double> (*values)()) {
  const std::vector<double> input = values();
  for (auto _ : state) benchmark::DoNotOptimize(Filtered(settings, input, false));
}

const FilterSettings movingAverage{.kind = FilterKind::MovingAverage, .width = 101};
const FilterSettings median{.kind = FilterKind::Median, .width = 101};
const FilterSettings exponential{.kind = FilterKind::Exponential, .alpha = 0.1};
const FilterSettings butterworth{.kind = FilterKind::Butterworth, .order = 8, .cutoff = 5, .rate = 100};
const FilterSettings chebyshev{
    .kind = FilterKind::Chebyshev, .order = 8, .cutoff = 5, .ripple = 0.5, .rate = 100};
const FilterSettings notch{.kind = FilterKind::Notch, .frequency = 20, .q = 10, .rate = 100};

BENCHMARK_CAPTURE(FilterAMillion, MovingAverage101, movingAverage, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Median101, median, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Exponential, exponential, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Butterworth8, butterworth, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Chebyshev8, chebyshev, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Notch, notch, Noise)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FilterAMillion, Butterworth8AfterAStep, butterworth, Step)->Unit(benchmark::kMillisecond);

std::vector<Point> Points() {
  std::vector<Point> points;
  for (const double value : Noise()) points.push_back({static_cast<double>(points.size()), value});
  return points;
}

void DescribeAMillion(benchmark::State& state) {
  const std::vector<Point> points = Points();
  for (auto _ : state) benchmark::DoNotOptimize(Describe(points));
}
BENCHMARK(DescribeAMillion)->Unit(benchmark::kMillisecond);

void SpectrumOfAMillion(benchmark::State& state) {
  const std::vector<Point> points = Points();
  for (auto _ : state) benchmark::DoNotOptimize(SpectrumOf(points, 100));
}
BENCHMARK(SpectrumOfAMillion)->Unit(benchmark::kMillisecond);

// What a key in the filter's fields costs.
void Respond(benchmark::State& state, const FilterSettings& settings) {
  for (auto _ : state) benchmark::DoNotOptimize(ResponseOf(settings, true));
}
BENCHMARK_CAPTURE(Respond, Chebyshev8, chebyshev)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Respond, Median101, median)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quarlin
