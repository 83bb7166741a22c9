// SPDX-License-Identifier: GPL-3.0-or-later
// The commonest pairs of numbers, done on the spot; false leaves the rest to Apply.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include "script/values/effort.h"
#include "script/values/operators.h"
#include "script/values/value.h"

namespace quarlin::vbs {

inline bool IsWholeNumber(const Value& value) {
  return value.Is(Kind::Integer) || value.Is(Kind::Long);
}

// A result that does not fit becomes the next wider kind; a Long never becomes an Integer again.
inline bool StoreWhole(Value& place, bool narrow, std::int64_t result) {
  if (narrow && result == static_cast<std::int16_t>(result)) {
    place.SetWhole(Kind::Integer, result);
  } else if (result == static_cast<std::int32_t>(result)) {
    place.SetWhole(Kind::Long, result);
  } else {
    place.SetReal(Kind::Double, static_cast<double>(result));
  }
  return true;
}

inline bool BothIntegers(const Value& left, const Value& right) {
  return left.Is(Kind::Integer) && right.Is(Kind::Integer);
}

// `operation` is on 64-bit integers, `real` on doubles; a Double result must be finite to be good.
template <class Whole, class Real>
bool QuickArithmetic(Value& place, const Value& left, const Value& right, Whole whole, Real real) {
  if (IsWholeNumber(left) && IsWholeNumber(right)) {
    return StoreWhole(place, BothIntegers(left, right), whole(left.AsWhole(), right.AsWhole()));
  }
  double a = 0;
  double b = 0;
  if (left.Is(Kind::Double)) {
    a = left.AsReal();
  } else if (IsWholeNumber(left)) {
    a = static_cast<double>(left.AsWhole());
  } else {
    return false;
  }
  if (right.Is(Kind::Double)) {
    b = right.AsReal();
  } else if (IsWholeNumber(right)) {
    b = static_cast<double>(right.AsWhole());
  } else {
    return false;
  }
  const double result = real(a, b);
  if (!(result <= std::numeric_limits<double>::max() && result >= -std::numeric_limits<double>::max())) {
    return false;
  }
  place.SetReal(Kind::Double, result);
  return true;
}

// 1 true, 0 false, -1: not done here.
template <class Compare>
int QuickCompare(const Value& left, const Value& right, Compare compare) {
  if (IsWholeNumber(left)) {
    if (IsWholeNumber(right)) return compare(left.AsWhole(), right.AsWhole());
    if (right.Is(Kind::Double)) return compare(static_cast<double>(left.AsWhole()), right.AsReal());
  } else if (left.Is(Kind::Double)) {
    if (right.Is(Kind::Double)) return compare(left.AsReal(), right.AsReal());
    if (IsWholeNumber(right)) return compare(left.AsReal(), static_cast<double>(right.AsWhole()));
  } else if (left.IsString() && right.IsString()) {
    const std::u16string_view one = left.AsText();
    const std::u16string_view other = right.AsText();
    effort::Touch(std::min(one.size(), other.size()));
    return compare(one.compare(other), 0);
  }
  return -1;
}

}  // namespace quarlin::vbs
