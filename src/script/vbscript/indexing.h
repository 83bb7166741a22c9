// Elements of arrays and default members of objects, picked by arguments in parentheses.
#pragma once

#include <string_view>

#include "script/vbscript/array.h"
#include "script/vbscript/dispatch.h"

namespace quarlin::vbs {

// Reading is IndexValue, in dispatch.h.

Value& ElementOf(ArrayBody& array, Arguments indices);
void PutIndexed(Value& target, Arguments indices, const Value& value, PutKind kind,
                std::u16string_view name = {});

// What Let stores: the plain value; an array of its own size for good loses that.
Value LetValue(const Value& value);

}  // namespace quarlin::vbs
