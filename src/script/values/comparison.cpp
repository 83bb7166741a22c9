// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/comparison.h"

#include <algorithm>
#include <cstring>

#include "script/values/conversions.h"
#include "script/values/dispatch.h"
#include "script/values/effort.h"
#include "script/values/number_text.h"

namespace quarlin::vbs {
namespace {

template <class Number>
int OrderOf(Number left, Number right) {
  return left < right ? -1 : (left > right ? 1 : 0);
}

bool Holds(Operator operation, int order) {
  switch (operation) {
    case Operator::Equal:
      return order == 0;
    case Operator::NotEqual:
      return order != 0;
    case Operator::Less:
      return order < 0;
    case Operator::Greater:
      return order > 0;
    case Operator::LessEqual:
      return order <= 0;
    default:
      return order >= 0;
  }
}

bool SameText(std::u16string_view left, std::u16string_view right) {
  return left.size() == right.size() &&
         (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0);
}

bool TextHolds(Operator operation, std::u16string_view left, std::u16string_view right) {
  effort::Touch(std::min(left.size(), right.size()));
  if (operation == Operator::Equal) return SameText(left, right);
  if (operation == Operator::NotEqual) return !SameText(left, right);
  return Holds(operation, left.compare(right));
}

bool IsWhole(const Value& value) {
  return value.GetKind() >= Kind::Boolean && value.GetKind() <= Kind::Long;
}

bool IsReal(const Value& value) {
  return value.Is(Kind::Single) || value.Is(Kind::Double);
}

bool FitsCurrency(double value) {
  constexpr double most = 922337203685477;
  return value >= -most && value <= most;
}

// The coarser of the two kinds decides how finely a Single or Currency is compared with a Double.
int NumberOrder(const Value& left, const Value& right) {
  if (IsWhole(left) && IsWhole(right)) return OrderOf(left.AsWhole(), right.AsWhole());
  const double leftReal = ToDouble(left);
  const double rightReal = ToDouble(right);
  const bool money = left.Is(Kind::Currency) || right.Is(Kind::Currency);
  if (money && FitsCurrency(leftReal) && FitsCurrency(rightReal)) {
    return OrderOf(ToCurrency(left), ToCurrency(right));
  }
  if (IsReal(left) && IsReal(right) && left.GetKind() != right.GetKind()) {
    return OrderOf(static_cast<float>(leftReal), static_cast<float>(rightReal));
  }
  return OrderOf(leftReal, rightReal);
}

// The number that a text is, or -1 and 0 for the words True and False, which stand for Booleans.
double NumberBesideLiteral(const Value& text, const Value& literal) {
  if (literal.Is(Kind::Date)) return ToDate(text);
  if (literal.Is(Kind::Boolean) && !NumberOfText(text.AsText())) return ToBool(text) ? -1 : 0;
  return ToDouble(text);
}

// A number and a text, in either order.
bool MixedHolds(Operator operation, const Value& left, const Value& right, Origin origin) {
  if (origin == Origin::Variable) return Holds(operation, left.IsString() ? 1 : -1);
  const Value& literal = origin == Origin::LiteralLeft ? left : right;
  if (literal.IsString()) {
    std::u16string leftText;
    std::u16string rightText;
    return TextHolds(operation, ToTextView(left, leftText), ToTextView(right, rightText));
  }
  const auto number = [&](const Value& side) {
    return side.IsString() ? Value::Double(NumberBesideLiteral(side, literal)) : side;
  };
  return Holds(operation, NumberOrder(number(left), number(right)));
}

bool IsComparable(const Value& value) {
  return !value.IsArray() && !value.IsMissing() && !value.IsObject();
}

void CheckComparable(const Value& value) {
  if (!IsComparable(value)) throw ScriptError(typeMismatch);
}

// Whether NumberBesideLiteral has a number for the text.
bool IsNumberBesideLiteral(std::u16string_view text, const Value& literal) {
  if (literal.Is(Kind::Date) && DateOfText(text)) return true;
  if (literal.Is(Kind::Boolean) && (SameName(text, u"True") || SameName(text, u"False"))) return true;
  return ReadNumber(text).has_value();
}

// A text beside a number literal, in either order, is compared as a number.
bool CanBeCompared(const Value& left, const Value& right, Origin origin) {
  if (!IsComparable(left) || !IsComparable(right)) return false;
  if (left.IsNull() || right.IsNull() || left.IsEmpty() || right.IsEmpty()) return true;
  if (left.IsString() == right.IsString() || origin == Origin::Variable) return true;
  const Value& literal = origin == Origin::LiteralLeft ? left : right;
  return literal.IsString() || IsNumberBesideLiteral((left.IsString() ? left : right).AsText(), literal);
}

}  // namespace

Value Compare(Operator operation, const Value& left, const Value& right, Origin origin) {
  if (IsWhole(left) && IsWhole(right)) {
    return Value::Bool(Holds(operation, OrderOf(left.AsWhole(), right.AsWhole())));
  }
  if (left.IsString() && right.IsString()) {
    return Value::Bool(TextHolds(operation, left.AsText(), right.AsText()));
  }
  CheckComparable(left);
  CheckComparable(right);
  if (left.IsNull() || right.IsNull()) return Value::Null();
  if (left.IsString() && right.IsEmpty()) return Value::Bool(TextHolds(operation, left.AsText(), {}));
  if (left.IsEmpty() && right.IsString()) return Value::Bool(TextHolds(operation, {}, right.AsText()));
  if (left.IsString() || right.IsString()) return Value::Bool(MixedHolds(operation, left, right, origin));
  return Value::Bool(Holds(operation, NumberOrder(left, right)));
}

bool FitsCase(const Value& selected, const Value& choice, Origin origin) {
  const Value left = Plain(selected);
  const Value right = Plain(choice);
  return CanBeCompared(left, right, origin) && IsTrue(Compare(Operator::Equal, left, right, origin));
}

Value IsSame(const Value& left, const Value& right) {
  if (!left.IsObject() || !right.IsObject()) throw ScriptError(objectRequired);
  return Value::Bool(left.AsObject() == right.AsObject());
}

int CompareText(std::u16string_view left, std::u16string_view right, bool ignoreCase) {
  if (!ignoreCase) return left.compare(right);
  const std::size_t shared = std::min(left.size(), right.size());
  for (std::size_t place = 0; place < shared; ++place) {
    const int order = OrderOf(LowerOf(left[place]), LowerOf(right[place]));
    if (order != 0) return order;
  }
  return OrderOf(left.size(), right.size());
}

}  // namespace quarlin::vbs
