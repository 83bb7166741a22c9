// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/operators.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "script/values/comparison.h"
#include "script/values/conversions.h"
#include "script/values/date_range.h"
#include "script/values/logic.h"

namespace quarlin::vbs {
namespace {

// The kind in which an operator works on two kinds. Null spreads, String joins texts, and Error stands for
// kinds that cannot take part.
constexpr std::size_t kindCount = static_cast<std::size_t>(Kind::Object) + 1;
using KindTable = std::array<std::array<Kind, kindCount>, kindCount>;

constexpr std::size_t Row(Kind kind) {
  return static_cast<std::size_t>(kind);
}

constexpr bool TakesPart(Kind kind) {
  return kind <= Kind::Date || kind == Kind::String;
}

constexpr Kind NumberKind(Kind kind) {
  if (kind == Kind::Empty || kind == Kind::Boolean) return Kind::Integer;
  return kind == Kind::String ? Kind::Double : kind;
}

constexpr bool Are(Kind left, Kind right, Kind one, Kind other) {
  return (left == one && right == other) || (left == other && right == one);
}

constexpr Kind WiderKind(Kind left, Kind right) {
  return Are(left, right, Kind::Single, Kind::Long) ? Kind::Double : std::max(left, right);
}

constexpr Kind DifferenceKind(Kind left, Kind right) {
  return left == Kind::Date && right == Kind::Date ? Kind::Double : WiderKind(left, right);
}

constexpr Kind ProductKind(Kind left, Kind right) {
  if (left == Kind::Date || right == Kind::Date) return Kind::Double;
  return Are(left, right, Kind::Currency, Kind::Double) ? Kind::Double : WiderKind(left, right);
}

// Single only among kinds that it holds without loss.
constexpr Kind QuotientKind(Kind left, Kind right) {
  return WiderKind(left, right) == Kind::Single ? Kind::Single : Kind::Double;
}

constexpr Kind WholeKind(Kind left, Kind right) {
  return std::min(std::max(left, right), Kind::Long);
}

constexpr Kind PowerKind(Kind, Kind) {
  return Kind::Double;
}

constexpr KindTable TableOf(Kind (*rule)(Kind left, Kind right)) {
  KindTable table{};
  for (std::size_t left = 0; left < kindCount; ++left) {
    for (std::size_t right = 0; right < kindCount; ++right) {
      const auto leftKind = static_cast<Kind>(left);
      const auto rightKind = static_cast<Kind>(right);
      Kind& entry = table[left][right];
      if (!TakesPart(leftKind) || !TakesPart(rightKind)) {
        entry = Kind::Error;
      } else if (leftKind == Kind::Null || rightKind == Kind::Null) {
        entry = Kind::Null;
      } else {
        entry = rule(NumberKind(leftKind), NumberKind(rightKind));
      }
    }
  }
  return table;
}

// Two texts are joined, and Empty leaves the other side as it is.
constexpr KindTable SumTable() {
  KindTable table = TableOf(WiderKind);
  for (const Kind kind : {Kind::Byte, Kind::String}) {
    table[Row(kind)][Row(Kind::Empty)] = kind;
    table[Row(Kind::Empty)][Row(kind)] = kind;
  }
  table[Row(Kind::String)][Row(Kind::String)] = Kind::String;
  return table;
}

constexpr KindTable sumKinds = SumTable();
constexpr KindTable differenceKinds = TableOf(DifferenceKind);
constexpr KindTable productKinds = TableOf(ProductKind);
constexpr KindTable quotientKinds = TableOf(QuotientKind);
constexpr KindTable wholeKinds = TableOf(WholeKind);
constexpr KindTable powerKinds = TableOf(PowerKind);

Kind Looked(const KindTable& table, const Value& left, const Value& right) {
  return table[Row(left.GetKind())][Row(right.GetKind())];
}

std::int64_t WholeOf(const Value& value) {
  return value.IsEmpty() ? 0 : value.AsWhole();
}

double RealOf(const Value& value) {
  return value.Is(Kind::Double) ? value.AsReal() : ToDouble(value);
}

// The narrowest kind from `kind` on that holds the number.
Value WholeResult(Kind kind, std::int64_t value) {
  if (kind == Kind::Byte && value == static_cast<std::uint8_t>(value)) {
    return Value::Byte(static_cast<std::uint8_t>(value));
  }
  if (kind != Kind::Long) return Value::Whole(value);
  if (value != static_cast<std::int32_t>(value)) return Value::Double(static_cast<double>(value));
  return Value::Long(static_cast<std::int32_t>(value));
}

// A Single or a Date that leaves its range becomes a Double.
Value RealResult(Kind kind, double value) {
  if (!std::isfinite(value)) throw ScriptError(overflow);
  if (kind == Kind::Single && std::isfinite(static_cast<float>(value))) {
    return Value::Single(static_cast<float>(value));
  }
  if (kind == Kind::Date && IsInDateRange(value)) return Value::Date(value);
  return Value::Double(value);
}

__extension__ using Wide = __int128;

// Of ten-thousandths squared, halves to even.
Wide CurrencyProduct(std::int64_t left, std::int64_t right) {
  constexpr Wide scale = 10'000;
  const Wide product = static_cast<Wide>(left) * right;
  Wide quotient = product / scale;
  const Wide rest = product % scale < 0 ? -(product % scale) : product % scale;
  const bool away = rest * 2 > scale || (rest * 2 == scale && quotient % 2 != 0);
  if (away) quotient += product < 0 ? -1 : 1;
  return quotient;
}

Value CurrencyResult(Wide value) {
  if (value != static_cast<std::int64_t>(value)) throw ScriptError(overflow);
  return Value::Currency(static_cast<std::int64_t>(value));
}

struct Sum {
  static std::int64_t Whole(std::int64_t left, std::int64_t right) { return left + right; }
  static double Real(double left, double right) { return left + right; }
  static Wide Currency(std::int64_t left, std::int64_t right) { return static_cast<Wide>(left) + right; }
};

struct Difference {
  static std::int64_t Whole(std::int64_t left, std::int64_t right) { return left - right; }
  static double Real(double left, double right) { return left - right; }
  static Wide Currency(std::int64_t left, std::int64_t right) { return static_cast<Wide>(left) - right; }
};

struct Product {
  static std::int64_t Whole(std::int64_t left, std::int64_t right) { return left * right; }
  static double Real(double left, double right) { return left * right; }
  static Wide Currency(std::int64_t left, std::int64_t right) { return CurrencyProduct(left, right); }
};

Value Concatenate(const Value& left, const Value& right) {
  if (left.IsNull() && right.IsNull()) return Value::Null();
  std::u16string leftScratch;
  std::u16string rightScratch;
  const std::u16string_view head = left.IsNull() ? u"" : ToTextView(left, leftScratch);
  const std::u16string_view tail = right.IsNull() ? u"" : ToTextView(right, rightScratch);
  if (tail.empty() && left.IsString()) return left;
  if (head.empty() && right.IsString()) return right;
  if (head.size() + tail.size() > longestText) throw ScriptError(outOfStringSpace);
  TextBody* body = TextBody::Make(head, head.size() + tail.size());
  body->Append(tail);
  return Value::Adopt(body);
}

// + - and *. No product of two Longs is too large for the 64 bits in which whole numbers are counted here.
template <class Arithmetic>
Value Calculate(const KindTable& kinds, const Value& left, const Value& right) {
  const Kind kind = Looked(kinds, left, right);
  switch (kind) {
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return WholeResult(kind, Arithmetic::Whole(WholeOf(left), WholeOf(right)));
    case Kind::Currency:
      return CurrencyResult(Arithmetic::Currency(ToCurrency(left), ToCurrency(right)));
    case Kind::String:
      return Concatenate(left, right);
    case Kind::Null:
      return Value::Null();
    case Kind::Error:
      throw ScriptError(typeMismatch);
    default:
      return RealResult(kind, Arithmetic::Real(RealOf(left), RealOf(right)));
  }
}

// As the table says, error 13 for kinds that cannot take part.
Kind KindOrError(const KindTable& kinds, const Value& left, const Value& right) {
  const Kind kind = Looked(kinds, left, right);
  if (kind == Kind::Error) throw ScriptError(typeMismatch);
  return kind;
}

Value Divide(const Value& left, const Value& right) {
  const Kind kind = KindOrError(quotientKinds, left, right);
  if (kind == Kind::Null) return Value::Null();
  const double dividend = RealOf(left);
  const double divisor = RealOf(right);
  if (divisor == 0) throw ScriptError(dividend == 0 ? overflow : divisionByZero);
  return RealResult(kind, dividend / divisor);
}

// The operands as \ and Mod take them, in 32 bits each.
struct WholeDivision {
  std::int64_t dividend;
  std::int64_t divisor;
};

WholeDivision WholeDivisionOf(const Value& left, const Value& right) {
  const WholeDivision division{ToLong(left), ToLong(right)};
  if (division.divisor == 0) throw ScriptError(divisionByZero);
  return division;
}

Value IntegerDivide(const Value& left, const Value& right) {
  const Kind kind = KindOrError(wholeKinds, left, right);
  if (kind == Kind::Null) return Value::Null();
  const auto [dividend, divisor] = WholeDivisionOf(left, right);
  const std::int64_t quotient = dividend / divisor;
  if (quotient > std::numeric_limits<std::int32_t>::max()) throw ScriptError(overflow);
  return WholeResult(kind, quotient);
}

Value Modulo(const Value& left, const Value& right) {
  const Kind kind = KindOrError(wholeKinds, left, right);
  if (kind == Kind::Null) return Value::Null();
  const auto [dividend, divisor] = WholeDivisionOf(left, right);
  return WholeResult(kind, dividend % divisor);
}

Value Power(const Value& left, const Value& right) {
  const Kind kind = KindOrError(powerKinds, left, right);
  if (kind == Kind::Null) return Value::Null();
  const double base = RealOf(left);
  const double exponent = RealOf(right);
  const double power = std::pow(base, exponent);
  if (std::isnan(power) || (base == 0 && exponent < 0)) throw ScriptError(invalidCall);
  return RealResult(kind, power);
}

}  // namespace

Value Apply(Operator operation, const Value& left, const Value& right, Origin origin) {
  if (operation == Operator::Is) return IsSame(left, right);
  if (left.IsObject() || right.IsObject()) {
    const Value plainLeft = Plain(left);
    return Apply(operation, plainLeft, Plain(right), origin);
  }
  switch (operation) {
    case Operator::Add:
      return Calculate<Sum>(sumKinds, left, right);
    case Operator::Subtract:
      return Calculate<Difference>(differenceKinds, left, right);
    case Operator::Multiply:
      return Calculate<Product>(productKinds, left, right);
    case Operator::Divide:
      return Divide(left, right);
    case Operator::IntegerDivide:
      return IntegerDivide(left, right);
    case Operator::Modulo:
      return Modulo(left, right);
    case Operator::Power:
      return Power(left, right);
    case Operator::Concatenate:
      return Concatenate(left, right);
    case Operator::And:
    case Operator::Or:
    case Operator::Xor:
    case Operator::Eqv:
    case Operator::Imp:
      return Combine(operation, left, right);
    default:
      return Compare(operation, left, right, origin);
  }
}

Value Negate(const Value& value) {
  Value number = ToNumber(value);
  switch (number.GetKind()) {
    case Kind::Null:
      return number;
    case Kind::Byte:
    case Kind::Integer:
      return Value::Whole(-number.AsWhole());
    case Kind::Long:
      return WholeResult(Kind::Long, -number.AsWhole());
    case Kind::Currency:
      return CurrencyResult(-static_cast<Wide>(number.AsWhole()));
    default:
      return RealResult(number.GetKind(), -number.AsReal());
  }
}

}  // namespace quarlin::vbs
