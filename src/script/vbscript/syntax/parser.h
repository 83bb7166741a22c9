// SPDX-License-Identifier: GPL-3.0-or-later
// From a script's text to its parts.
#pragma once

#include <string_view>

#include "script/vbscript/syntax/ast.h"

namespace quarlin::vbs {

// Throws ScriptError with a compile number (1001 to 1058), the place and the text of its line. Nesting
// deeper than the parser's bound is error 1001 "Out of memory" rather than an exhausted stack.
ast::Program Parse(std::u16string_view source);

// One expression and nothing behind it, for Eval.
ast::ExpressionPtr ParseExpression(std::u16string_view source);

}  // namespace quarlin::vbs
