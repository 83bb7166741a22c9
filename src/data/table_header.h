// SPDX-License-Identifier: GPL-3.0-or-later
// The row of names above a table's numbers.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "data/number_rule.h"

namespace quarlin {

// Whether the first of these rows, which begin a text, holds names: none of its columns begins with a number,
// and one of the rows below does. What indicators write in place of a value ("OVER", "-----") is no name.
bool IsHeaded(std::span<const std::string> rows, char separator);

struct CurveHead {
  std::string name;
  std::string unit;
};

// What "Weight [kg]" or "Weight (kg)" says.
CurveHead HeadOf(std::string_view cell);

// The name that the first of `rows` has for the number that `rule` reads in the second; empty where it has
// none.
CurveHead HeadFor(const NumberRule& rule, std::span<const std::string> rows, char separator);

}  // namespace quarlin
