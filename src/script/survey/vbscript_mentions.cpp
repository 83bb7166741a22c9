// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "script/survey/mentions.h"
#include "script/survey/vbscript_names.h"
#include "script/values/conversions.h"
#include "script/values/dispatch.h"
#include "script/vbscript/functions/library.h"
#include "script/vbscript/syntax/parser.h"

namespace quarlin::survey {
namespace {

using namespace vbs::ast;  // the tree's own names
using vbs::SameName;

// Functions of the language that have no row in the library.
constexpr std::array<std::u16string_view, 6> specialNames{u"Execute", u"ExecuteGlobal", u"Eval",
                                                          u"GetRef",  u"Err",           u"RegExp"};
constexpr std::array<std::u16string_view, 3> textRunners{u"Execute", u"ExecuteGlobal", u"Eval"};

// These read a text, or write one, with the signs of the locale.
constexpr std::array<std::u16string_view, 12> localeFunctions{
    u"CDbl",   u"CSng",      u"CCur",         u"CDate",          u"IsNumeric",      u"TimeValue",
    u"IsDate", u"DateValue", u"FormatNumber", u"FormatCurrency", u"FormatDateTime", u"FormatPercent"};

template <std::size_t count>
bool IsOneOf(const std::array<std::u16string_view, count>& names, std::u16string_view name) {
  return std::ranges::any_of(names, [&](std::u16string_view other) { return SameName(name, other); });
}

bool IsInLibrary(std::u16string_view name) {
  const auto has = [&](const auto& rows) {
    return std::ranges::any_of(rows, [&](const auto& row) { return SameName(row.name, name); });
  };
  return has(vbs::StringFunctions()) || has(vbs::MathFunctions()) || has(vbs::ConversionFunctions()) ||
         has(vbs::DateFunctions()) || has(vbs::FormatFunctions()) || has(vbs::ArrayFunctions()) ||
         has(vbs::InteractionFunctions()) || has(vbs::LibraryConstants()) || IsOneOf(specialNames, name);
}

// Values that can be worked out without anything else happening.
bool IsPlainValue(const Expression& expression) {
  const bool acts = expression.kind == ExpressionKind::Call || expression.kind == ExpressionKind::Member ||
                    expression.kind == ExpressionKind::New || (expression.kind == ExpressionKind::Binary);
  return !acts;
}

class Reader {
 public:
  Reader(const Program& program, const IsKnown& isHosts) : program_(program) {
    isKnown_ = [&isHosts](std::u16string_view name) { return isHosts(name) || IsInLibrary(name); };
  }

  Mentions Read() {
    CollectGlobals();
    Visit(program_.body);
    for (const vbs::ast::Procedure& procedure : program_.procedures) {
      Note(procedure);
      Visit(procedure, {});
    }
    for (const Class& declared : program_.classes) {
      for (const vbs::ast::Procedure& procedure : declared.procedures) Visit(procedure, MembersOf(declared));
    }
    NoteUnread(globals_);
    if (found_.runsTexts) found_.unread.clear();
    // Another procedure may have set what it was handed.
    std::erase_if(found_.chains, [&](const Chain& chain) {
      return chain.program.empty() && !isKnown_(chain.root.name) &&
             handedOver_.contains(FoldedName(chain.root.name));
    });
    return std::move(found_);
  }

 private:
  struct Path {
    const Expression* root = nullptr;  // a Name; null for what is reached otherwise
    std::vector<Chain::Step> steps;    // the root's own first
  };

  void CollectGlobals() {
    for (const vbs::ast::Procedure& procedure : program_.procedures) {
      globals_.fixed.insert(FoldedName(procedure.name));
    }
    for (const Class& declared : program_.classes) globals_.fixed.insert(FoldedName(declared.name));
    CollectNames(program_.body, isKnown_, globals_);
    for (const vbs::ast::Procedure& procedure : program_.procedures) MixPrograms(ScopeOf(procedure, {}));
  }

  // A variable of the top level may hold another object once a procedure has set it.
  void MixPrograms(const Scope& scope) {
    for (const auto& [folded, variable] : scope.variables) {
      Variable* global = scope.declared.contains(folded) ? nullptr : Find(globals_, folded);
      if (global != nullptr && global->program != variable.program) global->program = u"";
    }
  }

  Scope ScopeOf(const vbs::ast::Procedure& procedure, const std::set<std::u16string>& around) const {
    Scope scope;
    scope.fixed = around;
    scope.fixed.insert(FoldedName(procedure.name));
    for (const Parameter& parameter : procedure.parameters) scope.fixed.insert(FoldedName(parameter.name));
    CollectNames(procedure.body, isKnown_, scope);
    return scope;
  }

  static std::set<std::u16string> MembersOf(const Class& declared) {
    std::set<std::u16string> names;
    for (const Class::Field& field : declared.fields) names.insert(FoldedName(field.declarator.name));
    for (const vbs::ast::Procedure& procedure : declared.procedures) names.insert(FoldedName(procedure.name));
    return names;
  }

  void Note(const vbs::ast::Procedure& procedure) {
    found_.procedures.push_back({procedure.name, procedure.at, !procedure.parameters.empty()});
  }

  void Visit(const vbs::ast::Procedure& procedure, const std::set<std::u16string>& around) {
    Scope scope = ScopeOf(procedure, around);
    locals_ = &scope;
    Visit(procedure.body);
    NoteUnread(scope);
    locals_ = nullptr;
  }

  void NoteUnread(const Scope& scope) {
    for (const auto& [folded, variable] : scope.variables) {
      if (variable.assignments != 1 || variable.reads > 0 || !variable.isPlain) continue;
      const bool isOthers = &scope != &globals_ && globals_.Has(folded);
      if (!isOthers) found_.unread.push_back({variable.name, variable.at});
    }
  }

  void Visit(const Block& block) {
    for (const auto& statement : block) Visit(*statement);
  }

  void Visit(const Statement& statement) {
    for (const Declarator& declarator : statement.declarators) {
      for (const auto& bound : declarator.bounds) Visit(bound.get());
    }
    switch (statement.kind) {
      case StatementKind::Let:
      case StatementKind::Set:
        Visit(statement.expressions[1].get());
        VisitTarget(*statement.expressions[0], IsPlainValue(*statement.expressions[1]));
        break;
      case StatementKind::With:
        Visit(statement.expressions[0].get());
        with_.push_back(PathOf(*statement.expressions[0]));
        Visit(statement.body);
        with_.pop_back();
        return;
      case StatementKind::Call:
        NoteBareCall(*statement.expressions[0]);
        [[fallthrough]];
      default:
        for (const auto& expression : statement.expressions) Visit(expression.get());
    }
    for (const Branch& branch : statement.branches) {
      for (const auto& test : branch.tests) Visit(test.get());
      Visit(branch.body);
    }
    Visit(statement.body);
    Visit(statement.otherwise);
  }

  void VisitTarget(const Expression& target, bool isPlain) {
    Variable* variable = target.kind == ExpressionKind::Name ? VariableOf(target.name) : nullptr;
    if (variable == nullptr) {
      Visit(&target);
      return;
    }
    if (variable->assignments++ == 0) {
      variable->at = target.at;
      variable->name = target.name;
    }
    variable->isPlain = variable->isPlain && isPlain;
  }

  Variable* VariableOf(std::u16string_view name) {
    const std::u16string folded = FoldedName(name);
    if (locals_ != nullptr && locals_->Has(folded) && !IsGlobalFor(folded)) return Find(*locals_, folded);
    return Find(globals_, folded);
  }

  // A name that a procedure only assigns is the top level's where that has it.
  bool IsGlobalFor(const std::u16string& folded) const {
    return !locals_->fixed.contains(folded) && !locals_->declared.contains(folded) && globals_.Has(folded);
  }

  static Variable* Find(Scope& scope, const std::u16string& folded) {
    const auto found = scope.variables.find(folded);
    return found == scope.variables.end() ? nullptr : &found->second;
  }

  bool IsDeclared(const std::u16string& folded) const {
    return globals_.Has(folded) || (locals_ != nullptr && locals_->Has(folded));
  }

  void Visit(const Expression* expression) {
    if (expression == nullptr) return;
    switch (expression->kind) {
      case ExpressionKind::Literal:
        if (expression->value.IsString()) {
          found_.texts.push_back({std::u16string(expression->value.AsText()), expression->at});
        }
        return;
      case ExpressionKind::Name:
      case ExpressionKind::Member:
      case ExpressionKind::Call:
        VisitPath(*expression);
        return;
      default:
        for (const auto& operand : expression->operands) Visit(operand.get());
    }
  }

  void VisitPath(const Expression& expression) {
    VisitArguments(expression);
    NoteCall(expression);
    const Path path = PathOf(expression);
    if (path.root == nullptr) return;
    const std::u16string folded = FoldedName(path.root->name);
    found_.used.insert(folded);
    Variable* variable = VariableOf(path.root->name);
    if (variable != nullptr) ++variable->reads;
    Chain chain{path.steps.front(), {path.steps.begin() + 1, path.steps.end()}, expression.at, {}};
    if (IsDeclared(folded)) {
      if (variable == nullptr || !variable->program || variable->program->empty()) return;
      chain.program = *variable->program;
    } else if (IsInLibrary(path.root->name)) {
      return;
    }
    if (!chain.members.empty() || chain.root.indexed) found_.chains.push_back(std::move(chain));
  }

  // What hangs on the path: arguments, and an object that is no name.
  void VisitArguments(const Expression& expression) {
    const Expression* at = &expression;
    while (at->kind == ExpressionKind::Member || at->kind == ExpressionKind::Call) {
      for (std::size_t i = 1; i < at->operands.size(); ++i) {
        const Expression& argument = *at->operands[i];
        if (argument.kind == ExpressionKind::Name) handedOver_.insert(FoldedName(argument.name));
        Visit(&argument);
      }
      if (at->operands.empty()) return;
      at = at->operands[0].get();
    }
    if (at->kind != ExpressionKind::Name) Visit(at);
  }

  void NoteCall(const Expression& expression) {
    if (const auto program = ProgramMadeBy(expression)) found_.programs.push_back({*program, expression.at});
    const Expression* callee = &expression;
    if (expression.kind == ExpressionKind::Call) callee = expression.operands[0].get();
    if (callee->kind != ExpressionKind::Name || IsDeclared(FoldedName(callee->name))) return;
    if (IsOneOf(textRunners, callee->name)) found_.runsTexts = true;
    if (SameName(callee->name, u"SetLocale")) found_.choosesLocale = true;
    if (expression.kind != ExpressionKind::Call || expression.operands.size() < 2) return;
    const Expression& argument = *expression.operands[1];
    const bool isNumber = argument.kind == ExpressionKind::Literal && !argument.value.IsString();
    if (!isNumber && IsOneOf(localeFunctions, callee->name)) {
      found_.conversions.push_back({callee->name, callee->at});
    }
  }

  // "Foo" as a whole statement: a variable cannot stand there.
  void NoteBareCall(const Expression& callee) {
    if (callee.kind != ExpressionKind::Name || IsInLibrary(callee.name)) return;
    if (!IsDeclared(FoldedName(callee.name))) found_.chains.push_back({{callee.name}, {}, callee.at, {}});
  }

  Path PathOf(const Expression& expression) const {
    Path path;
    bool indexed = false;
    const Expression* at = &expression;
    for (;; at = at->operands[0].get()) {
      if (at->kind == ExpressionKind::Call) {
        indexed = true;
        continue;
      }
      path.steps.push_back({at->name, std::exchange(indexed, false)});
      if (at->kind != ExpressionKind::Member || at->operands.empty()) break;
    }
    std::ranges::reverse(path.steps);
    if (at->kind == ExpressionKind::Name) path.root = at;
    const bool isInWith =
        at->kind == ExpressionKind::Member && !with_.empty() && with_.back().root != nullptr;
    if (isInWith) {
      path.root = with_.back().root;
      path.steps.insert(path.steps.begin(), with_.back().steps.begin(), with_.back().steps.end());
    }
    return path;
  }

  const Program& program_;
  IsKnown isKnown_;
  Mentions found_;
  Scope globals_;
  Scope* locals_ = nullptr;
  std::vector<Path> with_;
  std::set<std::u16string> handedOver_;  // folded names that stand alone as arguments
};

}  // namespace

Mentions MentionsOfVbscript(std::u16string_view source, const IsKnown& isHosts) {
  const Program program = vbs::Parse(source);
  return Reader(program, isHosts).Read();
}

std::u16string FoldedName(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) unit = vbs::LowerOf(unit);
  return folded;
}

}  // namespace quarlin::survey
