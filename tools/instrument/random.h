// A seeded source of chance. Its numbers depend on the seed alone, also with another standard library,
// whose distributions may differ while the engine may not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace quarlin::instrument {

// Each use has a chance of its own, so that the faults of a seed depend neither on when the requests come
// nor on how far the answers are delayed.
enum class Chance : std::uint64_t { Faults, Load, Timing };

class Random {
 public:
  Random(std::uint64_t seed, Chance use) : engine_(seed * 4 + static_cast<std::uint64_t>(use)) {}

  // 0 up to, not including, 1.
  double Fraction() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }

  double Between(double low, double high) { return low + (high - low) * Fraction(); }

  // 0 to `count` - 1; `count` is not 0.
  std::size_t Below(std::size_t count) {
    return static_cast<std::size_t>(Fraction() * static_cast<double>(count));
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace quarlin::instrument
