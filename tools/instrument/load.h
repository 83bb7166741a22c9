// SPDX-License-Identifier: GPL-3.0-or-later
// The load on the scale: every few seconds somebody puts another weight on it, the reading settles
// exponentially, and meanwhile it drifts slowly and is a little noisy.
#pragma once

#include <cstdint>

#include "base/clock.h"
#include "instrument/random.h"

namespace quarlin::instrument {

struct Reading {
  double grams = 0;
  bool stable = false;  // settled to within two divisions of 1 g
};

class Load {
 public:
  // Starts settled at 12.345 kg.
  Load(std::uint64_t seed, Instant start);

  // The reading at `now`, which never goes back.
  Reading At(Instant now);

 private:
  void Change();
  double Unsettled(Instant now) const;
  double Drift(Instant now) const;

  Random random_;
  Instant start_;
  Instant changed_;     // when the present weight was put on
  Instant nextChange_;  // when it will be replaced
  double target_ = 12345;
  double step_ = 0;  // what was missing to the target when it changed, in grams
};

}  // namespace quarlin::instrument
