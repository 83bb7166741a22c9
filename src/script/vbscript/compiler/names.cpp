// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/compiler/names.h"

#include "script/vbscript/compiler/bytecode.h"

namespace quarlin::vbs {
namespace {

using ast::Expression;
using ast::ExpressionKind;
using ast::Statement;
using ast::StatementKind;

class Collector {
 public:
  Collector(BlockNames& names, const Symbols& symbols) : names_(names), symbols_(symbols) {}

  void Visit(const ast::Block& block) {
    for (const auto& statement : block) Visit(*statement);
  }

 private:
  void Visit(const Statement& statement) {
    VisitDeclarations(statement);
    for (const auto& expression : statement.expressions) VisitArguments(expression.get());
    switch (statement.kind) {
      case StatementKind::Let:
      case StatementKind::Set:
      case StatementKind::For:
      case StatementKind::ForEach:
        Use(*statement.expressions[0]);
        break;
      case StatementKind::Erase:
        for (const auto& expression : statement.expressions) Use(*expression);
        break;
      default:
        break;
    }
    for (const ast::Branch& branch : statement.branches) {
      for (const auto& test : branch.tests) VisitArguments(test.get());
      Visit(branch.body);
    }
    Visit(statement.body);
    Visit(statement.otherwise);
  }

  void VisitDeclarations(const Statement& statement) {
    for (std::size_t i = 0; i < statement.declarators.size(); ++i) {
      const ast::Declarator& declarator = statement.declarators[i];
      for (const auto& bound : declarator.bounds) VisitArguments(bound.get());
      if (statement.kind == StatementKind::Const) {
        names_.constants.push_back({Folded(declarator.name), statement.expressions[i].get()});
        continue;
      }
      if (declarator.name.empty()) continue;
      (statement.kind == StatementKind::Dim ? names_.declared : names_.resized)
          .push_back(Folded(declarator.name));
      if (statement.kind == StatementKind::Dim && declarator.isArray) names_.arrays.push_back(&declarator);
    }
  }

  void Use(const Expression& expression) {
    if (expression.kind == ExpressionKind::Name) names_.used.insert(Folded(expression.name));
    if (expression.kind == ExpressionKind::Call) Use(*expression.operands[0]);  // a(i) = v
  }

  void VisitArguments(const Expression* expression) {
    if (expression == nullptr) return;
    const bool mayAssign = expression->kind == ExpressionKind::Call && !CallsLibrary(*expression);
    for (std::size_t i = 0; i < expression->operands.size(); ++i) {
      const Expression& operand = *expression->operands[i];
      if (mayAssign && i > 0 && operand.kind == ExpressionKind::Name) {
        names_.used.insert(Folded(operand.name));
      }
      VisitArguments(&operand);
    }
  }

  bool CallsLibrary(const Expression& call) const {
    const Expression& callee = *call.operands[0];
    if (callee.kind != ExpressionKind::Name) return false;
    const auto symbol = symbols_.Find(Folded(callee.name));
    return symbol && (symbol->kind == SymbolKind::Builtin || symbol->kind == SymbolKind::Special);
  }

  BlockNames& names_;
  const Symbols& symbols_;
};

}  // namespace

BlockNames NamesOf(const ast::Block& block, const Symbols& symbols) {
  BlockNames names;
  Collector(names, symbols).Visit(block);
  return names;
}

}  // namespace quarlin::vbs
