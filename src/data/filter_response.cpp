// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/filter_response.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <span>

#include "data/sections.h"

namespace quarlin {
namespace {

constexpr double settledWithin = 0.001;
constexpr double nothingHappens = 1e-7;
constexpr std::size_t leastStep = 64;
constexpr std::size_t mostStep = std::size_t{1} << 19;
constexpr int frequencyCount = 401;
constexpr int noiseValues = 100'000;
constexpr int widestSimulated = 201;

double Squared(double value) {
  return value * value;
}

// `values` behind the step and, both ways, as many before it: the way back begins at the far end.
std::vector<double> StepOf(const FilterSettings& settings, bool zeroPhase, std::size_t values) {
  const std::size_t before = zeroPhase ? values : 1;
  std::vector<double> step(before + values, 1.0);
  std::fill_n(step.begin(), before, 0.0);
  return Filtered(settings, step, zeroPhase);
}

// How many of the values at the end do not differ from 1 by more than `tolerance`.
std::size_t QuietEnd(std::span<const double> step, double tolerance) {
  const auto last = std::find_if(step.rbegin(), step.rend(),
                                 [&](double value) { return !(std::abs(value - 1) <= tolerance); });
  return static_cast<std::size_t>(last - step.rbegin());
}

// Twice as long until nothing happens in the second half any more: true then.
bool TakeStep(const FilterSettings& settings, bool zeroPhase, FilterResponse& response) {
  for (std::size_t values = leastStep;; values *= 2) {
    response.step = StepOf(settings, zeroPhase, values);
    response.stepAt = response.step.size() - values;
    if (QuietEnd(response.step, nothingHappens) >= values / 2) return true;
    if (values == mostStep) return false;
  }
}

void TakeSettlingTime(const FilterSettings& settings, FilterResponse& response) {
  const std::size_t quiet = QuietEnd(response.step, settledWithin);
  if (quiet == 0) return;
  const std::size_t behind = response.step.size() - response.stepAt;
  response.settlingTime = static_cast<double>(behind - std::min(behind, quiet)) / settings.rate;
}

double DelayOf(const FilterSettings& settings) {
  switch (settings.kind) {
    case FilterKind::MovingAverage:
    case FilterKind::Median:
      return (settings.width - 1) / 2.0;
    case FilterKind::Exponential:
      return (1 - settings.alpha) / settings.alpha;
    default:
      break;
  }
  double delay = 0;
  for (const SectionDesign& section : SectionsOf(settings)) delay += section.Delay();
  return delay;
}

// White noise of deviation 1 comes out with the root of the sum of the squared answers to a single 1, and
// these are the differences of the step.
double NoiseReductionByStep(const FilterResponse& response) {
  double power = Squared(response.step.front());
  for (std::size_t i = 1; i < response.step.size(); ++i) {
    power += Squared(response.step[i] - response.step[i - 1]);
  }
  return 1 / std::sqrt(power);
}

// A median is not linear: what it does to noise depends on the noise, here of normal distribution. The gain
// of a wide one grows with the root of the width, which saves the time.
double NoiseReductionOfMedian(FilterSettings settings, bool zeroPhase) {
  const int width = settings.width;
  settings.width = std::min(width, widestSimulated);
  std::mt19937_64 chance(1);
  std::normal_distribution<double> normal;
  std::vector<double> noise(noiseValues);
  std::generate(noise.begin(), noise.end(), [&] { return normal(chance); });
  double before = 0;
  for (const double value : noise) before += Squared(value);
  double after = 0;
  for (const double value : Filtered(settings, noise, zeroPhase)) after += Squared(value);
  return std::sqrt(before / after * width / settings.width);
}

double GainOfMovingAverage(int width, double angle) {
  const double one = std::sin(angle / 2);
  return one == 0 ? 1 : std::abs(std::sin(width * angle / 2) / (width * one));
}

double GainAt(const FilterSettings& settings, const std::vector<SectionDesign>& sections, double frequency) {
  const double angle = 2 * std::numbers::pi * frequency / settings.rate;
  if (settings.kind == FilterKind::MovingAverage) return GainOfMovingAverage(settings.width, angle);
  if (settings.kind == FilterKind::Exponential) {
    return settings.alpha / std::abs(1.0 - std::polar(1 - settings.alpha, -angle));
  }
  double gain = 1;
  for (const SectionDesign& section : sections) gain *= section.GainAt(std::tan(angle / 2));
  return gain;
}

// About where the gain begins to change, so that the frequencies begin well below it.
double CornerOf(const FilterSettings& settings) {
  switch (settings.kind) {
    case FilterKind::Butterworth:
    case FilterKind::Chebyshev:
      return settings.cutoff;
    case FilterKind::Notch:
      return settings.frequency;
    default:
      return settings.rate / (2 * std::numbers::pi * (1 + DelayOf(settings)));
  }
}

void TakeGains(const FilterSettings& settings, bool zeroPhase, FilterResponse& response) {
  const std::vector<SectionDesign> sections = SectionsOf(settings);
  const double last = settings.rate / 2;
  const double first = std::min(last / 100, CornerOf(settings) / 10);
  for (int i = 0; i < frequencyCount; ++i) {
    const double part = static_cast<double>(i) / (frequencyCount - 1);
    const double frequency = first * std::pow(last / first, part);
    const double gain = GainAt(settings, sections, frequency);
    response.frequencies.push_back(frequency);
    response.gains.push_back(zeroPhase ? Squared(gain) : gain);
  }
}

}  // namespace

FilterResponse ResponseOf(const FilterSettings& settings, bool zeroPhase) {
  FilterResponse response;
  const bool settles = TakeStep(settings, zeroPhase, response);
  TakeSettlingTime(settings, response);
  if (!zeroPhase) response.delay = DelayOf(settings);
  if (settings.kind == FilterKind::Median) {
    response.noiseReduction = NoiseReductionOfMedian(settings, zeroPhase);
    return response;
  }
  if (settles) response.noiseReduction = NoiseReductionByStep(response);
  TakeGains(settings, zeroPhase, response);
  return response;
}

}  // namespace quarlin
