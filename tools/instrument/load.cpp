// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/load.h"

#include <cmath>
#include <numbers>

namespace quarlin::instrument {

namespace {

constexpr double capacity = 30000;       // grams
constexpr double settlingSeconds = 0.4;  // to 1/e of the step
constexpr double settledAfter = 20;      // time constants; nothing that could be seen is left then
constexpr double stableWithin = 2;       // grams
constexpr double driftGrams = 5;
constexpr double driftSeconds = 600;  // one period
constexpr double noiseGrams = 1;
constexpr double shortestStay = 5;  // seconds
constexpr double longestStay = 15;
constexpr double emptyShare = 0.2;  // of all changes unload the scale

double Seconds(Duration duration) {
  return std::chrono::duration<double>(duration).count();
}

Duration FromSeconds(double seconds) {
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

}  // namespace

Load::Load(std::uint64_t seed, Instant start)
    : random_(seed, Use::Load),
      start_(start),
      changed_(start),
      nextChange_(start + FromSeconds(random_.Between(shortestStay, longestStay))) {}

Reading Load::At(Instant now) {
  while (now >= nextChange_) Change();
  const double unsettled = Unsettled(now);
  const double noise = random_.Between(-noiseGrams, noiseGrams);
  return {target_ + unsettled + Drift(now) + noise, std::abs(unsettled) < stableWithin};
}

void Load::Change() {
  const double before = target_ + Unsettled(nextChange_);
  target_ = random_.Fraction() < emptyShare ? 0 : random_.Between(0, capacity);
  step_ = before - target_;
  changed_ = nextChange_;
  nextChange_ += FromSeconds(random_.Between(shortestStay, longestStay));
}

double Load::Unsettled(Instant now) const {
  const double constants = Seconds(now - changed_) / settlingSeconds;
  return constants > settledAfter ? 0 : step_ * std::exp(-constants);
}

double Load::Drift(Instant now) const {
  return driftGrams * std::sin(2 * std::numbers::pi * Seconds(now - start_) / driftSeconds);
}

}  // namespace quarlin::instrument
