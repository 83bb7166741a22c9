// SPDX-License-Identifier: GPL-3.0-or-later
// Chance that can be repeated: the same seed gives the same numbers, on every machine and with every library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quarlin {

class Chance {
 public:
  virtual double Fraction() = 0;  // 0 up to, not including, 1

  std::size_t Below(std::size_t count) {  // 0 to `count` - 1; `count` is not 0
    return static_cast<std::size_t>(Fraction() * static_cast<double>(count));
  }
  double Between(double low, double high) { return low + (high - low) * Fraction(); }
  char OneOf(std::string_view choice) { return choice[Below(choice.size())]; }

 protected:
  Chance() = default;
  Chance(const Chance&) = default;
  Chance& operator=(const Chance&) = default;
  ~Chance() = default;
};

// Small enough for one in each entry of a long table.
class SmallChance final : public Chance {
 public:
  explicit SmallChance(std::uint64_t seed) : state_(seed) {}
  double Fraction() override;

 private:
  std::uint64_t state_;
};

// The upper 53 bits of a random number as a fraction.
inline double FractionOf(std::uint64_t random) {
  return static_cast<double>(random >> 11) * 0x1p-53;
}

// A probability as the user writes one; nothing for what is no number from 0 to 1.
std::optional<double> ReadProbability(std::string_view text);

}  // namespace quarlin
