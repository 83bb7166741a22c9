// SPDX-License-Identifier: GPL-3.0-or-later
// Which names a piece of VBScript brings in, and what becomes of its variables.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "script/survey/mentions.h"
#include "script/vbscript/syntax/ast.h"

namespace quarlin::survey {

struct Variable {
  int assignments = 0;
  int reads = 0;
  bool isPlain = true;                    // assigned what can be worked out without a call
  vbs::Position at;                       // of the first assignment
  std::u16string name;                    // as written there
  std::optional<std::u16string> program;  // every Set brings an object of this name; "" none, or several
};

// The script's top level, or one procedure. The keys are folded names.
struct Scope {
  std::set<std::u16string> fixed;     // parameters, procedures, classes and their members: no variables
  std::set<std::u16string> declared;  // by Dim and its like
  std::map<std::u16string, Variable> variables;

  bool Has(const std::u16string& folded) const {
    return fixed.contains(folded) || declared.contains(folded) || variables.contains(folded);
  }
};

// What the statements declare or assign. A name that the program has and nobody declares is not a variable.
void CollectNames(const vbs::ast::Block& block, const IsKnown& isKnown, Scope& scope);

// The identifier in CreateObject("Scripting.Dictionary"), or nothing.
std::optional<std::u16string> ProgramMadeBy(const vbs::ast::Expression& expression);

}  // namespace quarlin::survey
