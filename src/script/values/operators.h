// SPDX-License-Identifier: GPL-3.0-or-later
// The operators of the language on any two values. The machine does the commonest pairs of numbers itself
// and comes here for the rest.
#pragma once

#include <string_view>

#include "script/values/value.h"

namespace quarlin::vbs {

enum class Operator : std::uint8_t {
  Add,
  Subtract,
  Multiply,
  Divide,
  IntegerDivide,
  Modulo,
  Power,
  Concatenate,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Is,
  And,
  Or,
  Xor,
  Eqv,
  Imp
};

// Integer and Long results that do not fit become the next wider kind; only a Double that does not fit is
// error 6. Null spreads, but for the cases that And, Or, Imp and & have of their own.
//
// A comparison of a number with a text depends on where the two come from: between variables a number is
// less than any text; beside a literal the literal's kind decides for both.
enum class Origin : std::uint8_t { Variable, LiteralLeft, LiteralRight };
Value Apply(Operator operation, const Value& left, const Value& right, Origin origin = Origin::Variable);

Value Negate(const Value& value);
Value Not(const Value& value);

// Whether If takes the Then branch: Null counts as False.
bool IsTrue(const Value& value);

// By code unit (0), or without regard to case (1): less than, equal to or greater than 0.
int CompareText(std::u16string_view left, std::u16string_view right, bool ignoreCase);

}  // namespace quarlin::vbs
