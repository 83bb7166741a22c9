// SPDX-License-Identifier: GPL-3.0-or-later
// The instrument's chance, which is seeded.
#pragma once

#include <cstdint>
#include <random>

#include "faults/chance.h"

namespace quarlin::instrument {

// Each use has a chance of its own, so that the faults of a seed depend neither on when the requests come
// nor on how far the answers are delayed.
enum class Use : std::uint64_t { Faults, Load, Timing };

// On an engine of the standard library: its numbers, unlike those of the distributions, are laid down.
class Random final : public Chance {
 public:
  Random(std::uint64_t seed, Use use) : engine_(seed * 4 + static_cast<std::uint64_t>(use)) {}

  double Fraction() override { return FractionOf(engine_()); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace quarlin::instrument
