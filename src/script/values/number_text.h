// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as their texts, without the detour over a value.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quarlin::vbs {

struct NumberInText {
  double value;         // infinite when it is too large for a Double
  bool isBits = false;  // written with &H or &O: a pattern of bits, at most 64 of them
};

// As NumberOfText, which see.
std::optional<NumberInText> ReadNumber(std::u16string_view text);

// Room for any number's text; the views that are returned lie in it.
using NumberBuffer = std::array<char, 40>;

enum class Precision { Single = 7, Double = 15 };  // significant digits

// With the current locale's decimal sign; a real number scientific from 1E+15 up (Single: 1E+07), and where
// its fraction would need more places.
std::string_view WriteWhole(std::int64_t value, NumberBuffer& buffer);
std::string_view WriteReal(double value, Precision precision, NumberBuffer& buffer);
std::string_view WriteCurrency(std::int64_t tenThousandths, NumberBuffer& buffer);

}  // namespace quarlin::vbs
