// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/survey/vbscript_names.h"

#include "script/values/dispatch.h"

namespace quarlin::survey {

using namespace vbs::ast;  // the tree's own names
using vbs::SameName;

namespace {

class Collector {
 public:
  Collector(const IsKnown& isKnown, Scope& scope) : isKnown_(isKnown), scope_(scope) {}

  void Declare(const Block& block) {
    for (const auto& statement : block) {
      for (const Declarator& declarator : statement->declarators) {
        if (!declarator.name.empty()) scope_.declared.insert(FoldedName(declarator.name));
      }
      Inner(*statement, &Collector::Declare);
    }
  }

  void Assign(const Block& block) {
    for (const auto& statement : block) {
      if (IsAssignment(*statement)) AssignTo(*statement);
      Inner(*statement, &Collector::Assign);
    }
  }

 private:
  void Inner(const Statement& statement, void (Collector::*visit)(const Block& block)) {
    for (const Branch& branch : statement.branches) (this->*visit)(branch.body);
    (this->*visit)(statement.body);
    (this->*visit)(statement.otherwise);
  }

  static bool IsAssignment(const Statement& statement) {
    const StatementKind kind = statement.kind;
    return kind == StatementKind::Let || kind == StatementKind::Set || kind == StatementKind::For ||
           kind == StatementKind::ForEach;
  }

  void AssignTo(const Statement& statement) {
    const Expression& target = *statement.expressions[0];
    if (target.kind != ExpressionKind::Name) return;
    const std::u16string folded = FoldedName(target.name);
    if (scope_.fixed.contains(folded) && !scope_.declared.contains(folded)) return;
    if (!scope_.declared.contains(folded) && isKnown_(target.name)) return;
    const auto [entry, isNew] = scope_.variables.try_emplace(folded);
    if (statement.kind != StatementKind::Set) {
      entry->second.program = u"";
      return;
    }
    const auto program = ProgramMadeBy(*statement.expressions[1]);
    const bool clears = statement.expressions[1]->value.IsNothing() &&
                        statement.expressions[1]->kind == ExpressionKind::Literal;
    if (clears) return;
    const bool agrees = !entry->second.program || (program && SameName(*entry->second.program, *program));
    entry->second.program = agrees ? program.value_or(u"") : u"";
  }

  const IsKnown& isKnown_;
  Scope& scope_;
};

}  // namespace

void CollectNames(const Block& block, const IsKnown& isKnown, Scope& scope) {
  Collector collector(isKnown, scope);
  collector.Declare(block);
  collector.Assign(block);
}

std::optional<std::u16string> ProgramMadeBy(const Expression& expression) {
  if (expression.kind == ExpressionKind::New && SameName(expression.name, u"RegExp")) {
    return u"VBScript.RegExp";
  }
  if (expression.kind != ExpressionKind::Call || expression.operands.size() < 2) return std::nullopt;
  const std::u16string& callee = expression.operands[0]->name;
  const bool makes = SameName(callee, u"CreateObject");
  const bool takes = SameName(callee, u"GetObject");  // with the identifier in its second argument
  if (!makes && !takes) return std::nullopt;
  const Expression& argument = *expression.operands[takes ? expression.operands.size() - 1 : 1];
  if (argument.kind != ExpressionKind::Literal || !argument.value.IsString()) return std::nullopt;
  return std::u16string(argument.value.AsText());
}

}  // namespace quarlin::survey
