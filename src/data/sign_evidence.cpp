// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/sign_evidence.h"

#include <cmath>

namespace quarlin {

void SignEvidence::Learn(const ReadNumber& number) {
  if (number.guessed) return;
  if (number.decimal != 0) Of(number.decimal).isDecimal = true;
  if (number.thousands != 0) Of(number.thousands).isForThousands = true;
}

std::optional<double> SignEvidence::Settle(const ReadNumber& number) {
  if (number.guessed) return Guessed(number);
  if (number.thousands != 0 && Of(number.thousands).wasGuessed) return std::nullopt;
  Learn(number);
  return number.value;
}

std::optional<double> SignEvidence::Guessed(const ReadNumber& number) {
  Sign& own = Of(number.decimal);
  const Sign& other = Of(number.decimal == '.' ? ',' : '.');
  if (own.isForThousands)
    return own.isDecimal ? std::nullopt : std::optional(std::round(number.value * 1000));
  if (!own.isDecimal && (other.isDecimal || other.wasGuessed)) return std::nullopt;
  own.wasGuessed = true;
  return number.value;
}

}  // namespace quarlin
