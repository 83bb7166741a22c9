// SPDX-License-Identifier: GPL-3.0-or-later
// The operators that work on bits, for Apply.
#pragma once

#include "script/values/operators.h"

namespace quarlin::vbs {

// And to Imp of two values that are no objects. A truth of its own with Null: False And Null is False.
Value Combine(Operator operation, const Value& left, const Value& right);

}  // namespace quarlin::vbs
