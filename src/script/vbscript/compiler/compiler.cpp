// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/compiler/compiler.h"

#include <algorithm>

#include "script/values/operators.h"

namespace quarlin::vbs {
namespace {

// Registers of a text given to Execute for the names that it only reads.
constexpr std::uint32_t roomForRead = 256;

}  // namespace

std::shared_ptr<const Code> CompileTopLevel(Symbols& symbols, const Unit& unit, const ast::Program& program) {
  return Compiler(symbols, unit, nullptr).TopLevel(program);
}

std::shared_ptr<const Code> CompileProcedure(Symbols& symbols, const ProcedureSlot& slot) {
  return Compiler(symbols, *slot.unit, slot.owner).Procedure(*slot.tree);
}

std::shared_ptr<const Code> CompileSnippet(Symbols& symbols, const Unit& unit, const ast::Program& program,
                                           const Surroundings& around) {
  return Compiler(symbols, unit, around.owner).Snippet(program, around);
}

std::shared_ptr<const Code> CompileEval(Symbols& symbols, const Unit& unit, const ast::Expression& expression,
                                        const Surroundings& around) {
  return Compiler(symbols, unit, around.owner).Eval(expression, around);
}

Value LiteralValue(const ast::Expression& expression) {
  switch (expression.kind) {
    case ast::ExpressionKind::Negate:
      return Negate(LiteralValue(*expression.operands[0]));
    case ast::ExpressionKind::Plus:
    case ast::ExpressionKind::Parenthesis:
      return LiteralValue(*expression.operands[0]);
    default:
      return expression.value;
  }
}

bool MakesObjects(const Builtin& builtin) {
  return builtin.name == u"CreateObject" || builtin.name == u"GetObject";
}

Compiler::Compiler(Symbols& symbols, const Unit& unit, const ClassInfo* owner)
    : symbols_(symbols), unit_(unit), owner_(owner), out_(unit.source) {}

std::shared_ptr<const Code> Compiler::TopLevel(const ast::Program& program) {
  topLevel_ = true;
  const BlockNames names = NamesOf(program.body, symbols_);
  DeclareGlobals(names);
  out_.ReserveVariables(1);  // the result, which nobody reads
  SizeArrays(names);
  Statements(program.body);
  out_.Emit(Op::Return);
  return out_.Finish();
}

void Compiler::DeclareGlobals(const BlockNames& names) {
  for (const auto& constant : names.constants) {
    symbols_.Declare(constant.name, {SymbolKind::Constant, 0, LiteralValue(*constant.value)});
  }
  for (const auto& name : names.declared) symbols_.DeclareVariable(name);
  for (const auto& name : names.resized) {
    if (!symbols_.Find(name)) symbols_.DeclareVariable(name);
  }
  if (unit_.optionExplicit) return;
  for (const auto& name : names.used) {
    if (!symbols_.Find(name)) symbols_.AwaitVariable(name);
  }
}

void Compiler::SizeArrays(const BlockNames& names) {
  for (const ast::Declarator* declarator : names.arrays) {
    std::vector<std::int32_t> bounds;
    for (const auto& bound : declarator->bounds) {
      bounds.push_back(static_cast<std::int32_t>(LiteralValue(*bound).AsWhole()));
    }
    const Resolved variable = Resolve(declarator->name);
    out_.BeginPart(declarator->at);
    out_.Emit(Op::ReadyArray, variable.place, {}, {}, out_.ArrayOf(std::move(bounds)));
  }
}

void Compiler::Local(const std::u16string& folded, Operand place) {
  locals_[folded] = place;
}

// Nobody declared the name, and no statement of the top level has assigned it yet.
bool Compiler::IsFree(const std::u16string& folded) {
  if (ResolveInside(folded)) return false;
  const Resolved outside = ResolveOutside(folded);
  if (outside.meaning != Meaning::Variable || outside.place.space != Space::Global) {
    return outside.meaning == Meaning::Unknown;
  }
  return symbols_.FindDeclared(folded)->awaited;
}

// A free name becomes a variable of the procedure.
void Compiler::Assume(const std::u16string& folded) {
  if (const Symbol* symbol = symbols_.FindDeclared(folded)) out_.Made().awaited.push_back(symbol->number);
  out_.Made().assumed.push_back(folded);
  Local(folded, Operand::In(Space::Register, localCount_++));
}

void Compiler::DeclareLocals(const ast::Procedure& procedure) {
  for (const ast::Parameter& parameter : procedure.parameters) {
    const Space space = parameter.byValue ? Space::Register : Space::Parameter;
    Local(Folded(parameter.name), Operand::In(space, localCount_++));
    if (parameter.byValue) out_.Made().byValue.push_back(out_.Made().parameters);
    ++out_.Made().parameters;
  }
  out_.Made().result = localCount_;
  functionResult_ = Operand::In(Space::Register, localCount_++);
  if (procedure.kind == ast::ProcedureKind::Function || procedure.kind == ast::ProcedureKind::PropertyGet) {
    functionName_ = Folded(procedure.name);
    Local(functionName_, functionResult_);
  }
  const BlockNames names = NamesOf(procedure.body, symbols_);
  const auto declare = [this](const std::u16string& name) {
    if (!locals_.contains(name)) Local(name, Operand::In(Space::Register, localCount_++));
  };
  for (const auto& constant : names.constants) {
    Local(constant.name, out_.Constant(LiteralValue(*constant.value)));
  }
  for (const auto& name : names.declared) declare(name);
  for (const auto& name : names.resized) {
    if (IsFree(name)) Assume(name);
  }
  if (!unit_.optionExplicit) {
    for (const auto& name : names.used) {
      if (IsFree(name)) Assume(name);
    }
  }
  out_.ReserveVariables(localCount_);
  if (!out_.Made().awaited.empty()) out_.Emit(Op::Reconsider);
  SizeArrays(names);
}

std::shared_ptr<const Code> Compiler::Procedure(const ast::Procedure& procedure) {
  out_.Made().name = procedure.name;
  out_.BeginPart(procedure.at);
  DeclareLocals(procedure);
  Statements(procedure.body);
  out_.BeginStatement(procedure.endAt);
  out_.Emit(Op::Return);
  NoteNames();
  return out_.Finish();
}

void Compiler::NoteNames() {
  for (const auto& [name, place] : locals_) {
    if (place.space != Space::Constant) out_.Made().names.push_back({name, place});
  }
}

// The name of the function around is its result there, and calls it here as it does there.
void Compiler::LookInto(const Surroundings& around) {
  around_ = &around;
  if (around.code == nullptr) return;
  out_.Made().name = around.code->name;
  functionName_ = Folded(around.code->name);
}

// The registers of a snippet: first a Reference for each name that it shares with the procedure around it.
std::shared_ptr<const Code> Compiler::Snippet(const ast::Program& program, const Surroundings& around) {
  LookInto(around);
  const BlockNames names = NamesOf(program.body, symbols_);
  for (const auto& constant : names.constants) {
    Local(constant.name, out_.Constant(LiteralValue(*constant.value)));
  }
  for (const auto& name : names.declared) Import(name);
  for (const auto& name : names.resized) {
    if (IsFree(name)) Import(name);
  }
  for (const auto& name : names.used) {
    if (IsFree(name) && !unit_.optionExplicit) Import(name);
  }
  // Names that are only read are imported while the statements are compiled, so there is room for them.
  out_.Made().result = localCount_ + roomForRead;
  out_.ReserveVariables(localCount_ + roomForRead + 1);
  SizeArrays(names);
  Statements(program.body);
  out_.Emit(Op::Return);
  NoteNames();
  return out_.Finish();
}

std::shared_ptr<const Code> Compiler::Eval(const ast::Expression& expression, const Surroundings& around) {
  LookInto(around);
  out_.Made().result = roomForRead;
  out_.ReserveVariables(roomForRead + 1);
  out_.BeginPart(expression.at);
  const Operand result = Operand::In(Space::Register, roomForRead);
  const Operand value = Compile(expression, result);
  if (!(value == result)) out_.Emit(Op::Load, result, value);
  out_.Emit(Op::Return);
  return out_.Finish();
}

Operand Compiler::Import(const std::u16string& folded) {
  if (const auto known = locals_.find(folded); known != locals_.end()) return known->second;
  const Operand place = Operand::In(Space::Parameter, localCount_++);
  if (out_.Made().result != 0 && localCount_ >= out_.Made().result) throw ScriptError(1001);
  out_.Made().imports.push_back({folded, place});
  Local(folded, place);
  return place;
}

Compiler::Resolved Compiler::Resolve(std::u16string_view name) {
  const std::u16string folded = Folded(name);
  if (const auto inside = ResolveInside(folded)) return *inside;
  return ResolveOutside(folded);
}

std::optional<Compiler::Resolved> Compiler::ResolveInside(const std::u16string& folded) {
  if (const auto local = locals_.find(folded); local != locals_.end()) {
    const bool constant = local->second.space == Space::Constant;
    return Resolved{constant ? Meaning::Constant : Meaning::Variable, local->second};
  }
  if (around_ == nullptr || around_->code == nullptr) return std::nullopt;
  const auto& names = around_->code->names;
  const bool outer =
      std::any_of(names.begin(), names.end(), [&](const NamedPlace& place) { return place.name == folded; });
  if (outer || (around_->extras != nullptr && around_->extras->contains(folded))) {
    return Resolved{Meaning::Variable, Import(folded)};
  }
  return std::nullopt;
}

Compiler::Resolved Compiler::ResolveOutside(const std::u16string& folded) {
  if (owner_ != nullptr) {
    if (const ClassMember* member = owner_->Find(folded)) {
      if (member->field == ClassMember::none) return {Meaning::Method, {}, 0, member};
      return {Meaning::Variable, Operand::In(Space::Field, static_cast<std::size_t>(member->field))};
    }
  }
  const auto symbol = symbols_.Find(folded);
  if (!symbol) return {};
  switch (symbol->kind) {
    case SymbolKind::Variable:
      return {Meaning::Variable, Operand::In(Space::Global, symbol->number)};
    case SymbolKind::Constant:
      return {Meaning::Constant, out_.Constant(symbol->value)};
    case SymbolKind::Procedure:
      return {Meaning::Procedure, {}, symbol->number};
    case SymbolKind::Object:
      return {Meaning::Object, out_.Constant(symbol->value)};
    case SymbolKind::HostMember:
      return {Meaning::HostMember, out_.Constant(symbol->value)};
    case SymbolKind::Builtin:
      return {Meaning::Builtin, {}, symbol->number};
    case SymbolKind::Special:
      return {Meaning::Special, {}, symbol->number};
  }
  return {};
}

void Compiler::RaiseAt(std::int32_t number, std::u16string_view culprit) {
  out_.Emit(Op::Raise, {}, out_.Constant(Value::Long(number)), {}, out_.SiteOf(culprit));
}

}  // namespace quarlin::vbs
