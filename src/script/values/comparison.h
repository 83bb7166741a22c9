// SPDX-License-Identifier: GPL-3.0-or-later
// The operators that compare, for Apply.
#pragma once

#include "script/values/operators.h"

namespace quarlin::vbs {

// Equal to GreaterEqual of two values that are no objects: a Boolean, or Null when one of them is.
Value Compare(Operator operation, const Value& left, const Value& right, Origin origin);

// Whether both are the same object. Error 424 when one is none.
Value IsSame(const Value& left, const Value& right);

}  // namespace quarlin::vbs
