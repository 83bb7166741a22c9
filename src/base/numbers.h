// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as the program's text boxes, macros and labels read and write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

// The whole text as a number: blanks around it, a sign, a fraction and an exponent are accepted.
// Nothing when any other character is in it, or when it is empty.
std::optional<double> NumberOf(std::string_view text);

// The whole text as a 32-bit integer, halves rounded to even. What is no number counts as 0; what does
// not fit is held at the nearest end of the range.
std::int32_t IntegerOf(std::string_view text);

// The number that the text begins with, blanks skipped: "12abc" is 12, "abc" is 0, "&H1F" is 31.
double Val(std::string_view text);

// `value` in decimal with zeros on the left up to `digits` digits, not counting the sign; a longer
// number is written in full.
std::string PaddedDecimal(std::int64_t value, int digits);

// `value` in upper-case hexadecimal with zeros on the left up to `digits` digits.
std::string Hexadecimal(std::uint32_t value, int digits = 1);

// The lowest `digits` bits of `value`.
std::string BinaryText(std::uint32_t value, int digits);

// The character of a code, or none where `code` is no code from 0 to 255.
std::string CharacterOfCode(double code);

// The value of one hexadecimal digit, or -1.
int HexDigitValue(char character);

// The shortest decimal text that shows at least the digits a user sees: 15 significant digits for a
// double, 7 for a float; no trailing zeros, no exponent for ordinary magnitudes.
std::string DecimalText(double value);
std::string DecimalText(float value);

}  // namespace quarlin
