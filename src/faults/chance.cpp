// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/chance.h"

#include "base/numbers.h"

namespace quarlin {

// Steps by the golden ratio and mixes: each of the 2^64 states gives another number.
double SmallChance::Fraction() {
  std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  return FractionOf(mixed ^ (mixed >> 31));
}

std::optional<double> ReadProbability(std::string_view text) {
  const std::optional<double> probability = NumberOf(text);
  return probability && *probability >= 0 && *probability <= 1 ? probability : std::nullopt;
}

}  // namespace quarlin
