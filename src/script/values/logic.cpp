// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/logic.h"

#include <algorithm>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

// What a value is to these operators: a pattern as wide as its kind, one of Boolean to Long.
struct Bits {
  Kind kind;
  std::int32_t pattern;
};

Bits BitsOf(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return {value.GetKind(), static_cast<std::int32_t>(value.AsWhole())};
    case Kind::Empty:
      return {Kind::Integer, 0};
    case Kind::String:
      if (!NumberOfText(value.AsText())) return {Kind::Boolean, ToBool(value) ? -1 : 0};
      return {Kind::Long, ToLong(value)};
    default:
      return {Kind::Long, ToLong(value)};
  }
}

Value ValueOf(Kind kind, std::int32_t pattern) {
  switch (kind) {
    case Kind::Boolean:
      return Value::Bool(pattern != 0);
    case Kind::Byte:
      return Value::Byte(static_cast<std::uint8_t>(pattern));
    case Kind::Integer:
      return Value::Integer(static_cast<std::int16_t>(pattern));
    default:
      return Value::Long(pattern);
  }
}

// Boolean and Byte stay only among themselves.
Kind CommonKind(Kind left, Kind right) {
  return left == right ? left : std::max({left, right, Kind::Integer});
}

std::int32_t Combined(Operator operation, std::int32_t left, std::int32_t right) {
  switch (operation) {
    case Operator::And:
      return left & right;
    case Operator::Or:
      return left | right;
    case Operator::Xor:
      return left ^ right;
    case Operator::Eqv:
      return ~(left ^ right);
    default:
      return ~left | right;
  }
}

// Null beside a value that settles the result alone, or does not.
Value CombineWithNull(Operator operation, const Value& left, const Value& right) {
  if (left.IsNull() && right.IsNull()) return Value::Null();
  const Bits known = BitsOf(left.IsNull() ? right : left);
  const bool zero = known.pattern == 0;
  if (operation == Operator::And && zero) return ValueOf(known.kind, 0);
  if (operation == Operator::Or && !zero) return ValueOf(known.kind, known.pattern);
  if (operation == Operator::Imp && right.IsNull() && zero) return ValueOf(known.kind, -1);
  if (operation == Operator::Imp && left.IsNull() && !zero) return ValueOf(known.kind, known.pattern);
  return Value::Null();
}

}  // namespace

Value Combine(Operator operation, const Value& left, const Value& right) {
  if (left.IsNull() || right.IsNull()) return CombineWithNull(operation, left, right);
  const Bits leftBits = BitsOf(left);
  const Bits rightBits = BitsOf(right);
  return ValueOf(CommonKind(leftBits.kind, rightBits.kind),
                 Combined(operation, leftBits.pattern, rightBits.pattern));
}

Value Not(const Value& value) {
  Value plain = Plain(value);
  if (plain.IsNull()) return plain;
  const Bits bits = BitsOf(plain);
  return ValueOf(bits.kind, ~bits.pattern);
}

bool IsTrue(const Value& value) {
  if (value.Is(Kind::Boolean)) return value.AsBool();
  if (value.IsObject() || value.Is(Kind::Reference)) return IsTrue(Plain(value));
  return !value.IsNull() && ToBool(value);
}

}  // namespace quarlin::vbs
