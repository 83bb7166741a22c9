// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers as instruments, spreadsheets and people write them.
//
//   +00012.346 kg     12.346, "kg"
//   -  12.5g          -12.5, "g": blanks behind the sign, as indicators write them
//   1,234.5  1.234,5  1234.5: of two different signs the last is the decimal one
//   1.234.567         1234567
//   12,5  1,234       12.5 and 1.234: a lone sign is the decimal one, and the second is marked as guessed
//   1,2,3  12.5,13.1  three numbers and two: where no number comes of it, the comma separates
//   22.11.2026  0x1F  none
//
// Not finite or no number at all: "NaN", "OVER", "-----", "1e999".
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quarlin {

enum class DecimalSign { Either, Point, Comma };  // the other one then stands for thousands only

struct ReadNumber {
  double value;
  std::string_view unit;  // what stands behind it up to the next blank or separator; may be empty

  // How its signs were taken: '.', ',' or 0. Guessed: "1,234" was taken as 1.234 and could be 1234.
  char decimal = 0;
  char thousands = 0;
  bool guessed = false;
};

// The number that `text` begins with, behind blanks; nothing where it begins with something else.
std::optional<ReadNumber> LeadingNumber(std::string_view text, DecimalSign sign = DecimalSign::Either);

// One number of a text after the other.
class NumberScanner {
 public:
  explicit NumberScanner(std::string_view text, DecimalSign sign = DecimalSign::Either)
      : text_(text), sign_(sign) {}

  std::optional<ReadNumber> Next();

  // Where the number that Next() gave began, with its sign, and where it ended, before its unit.
  std::size_t Begin() const { return begin_; }
  std::size_t End() const { return at_; }

 private:
  struct Digits;
  bool IsDigitAt(std::size_t place) const;
  bool ToDigits();
  bool SkipHexadecimal();
  std::size_t RunEnd() const;
  std::optional<ReadNumber> NumberIn(std::size_t end);
  std::size_t Sign(std::size_t place) const;

  std::string_view text_;
  DecimalSign sign_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;
  std::size_t listEnd_ = 0;  // up to here commas separate
};

}  // namespace quarlin
