// SPDX-License-Identifier: GPL-3.0-or-later
// Which names a block of statements brings into its scope, found before it is compiled: a name counts
// from the scope's beginning, wherever it is declared.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "script/vbscript/compiler/symbols.h"
#include "script/vbscript/syntax/ast.h"

namespace quarlin::vbs {

struct BlockNames {
  std::vector<std::u16string> declared;  // folded, by Dim, in order
  std::vector<std::u16string> resized;   // by ReDim, which declares a name that nobody else did
  std::set<std::u16string> used;         // assigned, or handed to a procedure that might assign them
  struct NamedValue {
    std::u16string name;
    const ast::Expression* value;
  };
  std::vector<NamedValue> constants;
  std::vector<const ast::Declarator*> arrays;  // with bounds: sized before the first statement
};

// Arguments of the library's functions are only read, so they bring in nothing.
BlockNames NamesOf(const ast::Block& block, const Symbols& symbols);

}  // namespace quarlin::vbs
