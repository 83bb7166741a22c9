// SPDX-License-Identifier: GPL-3.0-or-later
// What the numbers of a file have told of their points and commas, so that "1,234" is read as the file means
// it.
//
// A number that can be read in one way only is read so, and tells what its signs are for. One that can be
// read in two, "1,234", follows what is known of its sign; where nothing is known of either sign it is 1.234.
// Where the file's other numbers leave it open, as after a change of the decimal sign in the middle, it is
// not read at all: a gap is better than a value a thousand times too large.
#pragma once

#include <array>
#include <optional>

#include "data/number_text.h"

namespace quarlin {

class SignEvidence {
 public:
  // Takes in what the number tells, without reading it.
  void Learn(const ReadNumber& number);

  // Its value, or nothing where it could be two; takes in what it tells.
  std::optional<double> Settle(const ReadNumber& number);

 private:
  struct Sign {
    bool isDecimal = false;
    bool isForThousands = false;
    bool wasGuessed = false;  // a number was read with this as its decimal sign, without a proof
  };
  Sign& Of(char sign) { return signs_[sign == ',' ? 1 : 0]; }
  std::optional<double> Guessed(const ReadNumber& number);

  std::array<Sign, 2> signs_;  // the point, the comma
};

}  // namespace quarlin
