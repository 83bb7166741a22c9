// SPDX-License-Identifier: GPL-3.0-or-later
// The operators that compare, for Apply.
#pragma once

#include "script/values/operators.h"

namespace quarlin::vbs {

// Equal to GreaterEqual of two values that are no objects: a Boolean, or Null when one of them is.
Value Compare(Operator operation, const Value& left, const Value& right, Origin origin);

// Whether a Case of Select Case fits what is selected, both as they stand there: Equal, but for what cannot
// be compared, which is unequal instead of error 13.
bool FitsCase(const Value& selected, const Value& choice, Origin origin);

// Whether both are the same object. Error 424 when one is none.
Value IsSame(const Value& left, const Value& right);

}  // namespace quarlin::vbs
