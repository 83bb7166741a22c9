// SPDX-License-Identifier: GPL-3.0-or-later
// The commonest pairs of numbers, done on the spot; false leaves the rest to Apply.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>

#include "script/values/effort.h"
#include "script/values/operators.h"
#include "script/values/value.h"

namespace quarlin::vbs {

inline bool IsWholeNumber(const Value& value) {
  return value.Is(Kind::Integer) || value.Is(Kind::Long);
}

// Counts nothing and refers to nothing, so that it can be copied and overwritten without a look at it.
inline bool IsBare(const Value& value) {
  return value.GetKind() < Kind::Reference;
}

// `place` is bare.
[[gnu::always_inline]] inline bool Store(Value& place, Value number) {
  std::construct_at(&place, std::move(number));
  return true;
}

// 0: both are Integers; 1: both are whole numbers, one of them at least a Long; more: something else is
// among them. One number tells it all, so that the commonest pairs take no branches.
[[gnu::always_inline]] inline unsigned Width(const Value& left, const Value& right) {
  static_assert(static_cast<int>(Kind::Long) == static_cast<int>(Kind::Integer) + 1);
  constexpr auto integer = static_cast<unsigned>(Kind::Integer);
  return (static_cast<unsigned>(left.GetKind()) - integer) |
         (static_cast<unsigned>(right.GetKind()) - integer);
}

inline bool AreWholeNumbers(unsigned width) {
  return width <= 1;
}

// A result that does not fit becomes the next wider kind; a Long never becomes an Integer again.
[[gnu::always_inline]] inline bool StoreWhole(Value& place, unsigned width, std::int64_t result) {
  const auto usual = static_cast<std::int32_t>(result);
  if (result != usual) [[unlikely]]
    return Store(place, Value::Double(static_cast<double>(result)));
  const auto small = static_cast<std::int16_t>(result);
  const bool isInteger = (width == 0) & (result == small);
  return Store(place, isInteger ? Value::Integer(small) : Value::Long(usual));
}

inline bool IsFinite(double number) {
  return std::abs(number) <= std::numeric_limits<double>::max();
}

inline bool IsQuickNumber(const Value& value) {
  return IsWholeNumber(value) || value.Is(Kind::Double);
}

inline double RealOf(const Value& quickNumber) {
  return quickNumber.Is(Kind::Double) ? quickNumber.AsReal() : static_cast<double>(quickNumber.AsWhole());
}

inline bool StoreReal(Value& place, double result) {
  return IsFinite(result) && Store(place, Value::Double(result));
}

// Those below write to places that are bare, and to no others.

// `operation` is one for 64-bit integers and for doubles.
template <class Operation>
[[gnu::always_inline]] inline bool QuickArithmetic(Value& place, const Value& left, const Value& right,
                                                   Operation operation) {
  if (!IsBare(place)) return false;
  const unsigned width = Width(left, right);
  if (AreWholeNumbers(width)) [[likely]]
    return StoreWhole(place, width, operation(left.AsWhole(), right.AsWhole()));
  if (!IsQuickNumber(left) || !IsQuickNumber(right)) return false;
  return StoreReal(place, operation(RealOf(left), RealOf(right)));
}

inline bool QuickAdd(Value& place, const Value& left, const Value& right) {
  return QuickArithmetic(place, left, right, std::plus<>());
}

inline bool QuickSubtract(Value& place, const Value& left, const Value& right) {
  return QuickArithmetic(place, left, right, std::minus<>());
}

inline bool QuickMultiply(Value& place, const Value& left, const Value& right) {
  return QuickArithmetic(place, left, right, std::multiplies<>());
}

inline bool QuickModulo(Value& place, const Value& left, const Value& right) {
  const unsigned width = Width(left, right);
  if (!IsBare(place) || !AreWholeNumbers(width) || right.AsWhole() == 0) return false;
  return StoreWhole(place, width, left.AsWhole() % right.AsWhole());
}

inline bool QuickIntegerDivide(Value& place, const Value& left, const Value& right) {
  const unsigned width = Width(left, right);
  if (!IsBare(place) || !AreWholeNumbers(width) || right.AsWhole() == 0) return false;
  const std::int64_t result = left.AsWhole() / right.AsWhole();
  return result == static_cast<std::int32_t>(result) && StoreWhole(place, width, result);
}

inline bool QuickDivide(Value& place, const Value& left, const Value& right) {
  if (!IsBare(place) || !IsQuickNumber(left) || !IsQuickNumber(right)) return false;
  const double divisor = RealOf(right);
  return divisor != 0 && StoreReal(place, RealOf(left) / divisor);
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
