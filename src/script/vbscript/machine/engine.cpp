// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/machine/engine.h"

#include "script/vbscript/machine/machine.h"
#include "script/vbscript/machine/machine_debugging.h"
#include "script/vbscript/syntax/parser.h"

namespace quarlin::vbs {

Engine::Engine(Services& services, EngineLimits limits)
    : machine_(std::make_unique<Machine>(services, limits)) {}

Engine::~Engine() = default;

void Engine::AddObject(std::u16string_view name, const ObjectRef& object, bool membersAreGlobal) {
  machine_->AddObject(name, object, membersAreGlobal);
}

void Engine::AddCode(std::u16string_view source) {
  machine_->AddCode(source);
}

void Engine::Check(std::u16string_view source) {
  Parse(source);
}

bool Engine::HasProcedure(std::u16string_view name) const {
  return machine_->HasProcedure(name);
}

Value Engine::Run(std::u16string_view name, Arguments arguments) {
  return machine_->RunNamed(name, arguments);
}

ObjectRef Engine::Make(std::u16string_view programId) {
  return machine_->Make(programId);
}

void Engine::SetDebugHook(DebugHook* hook) {
  machine_->SetDebugHook(hook);
}

void Engine::StopAt(StopsAt stops) {
  machine_->StopAt(std::move(stops));
}

CallView Engine::Where() const {
  return machine_->Where();
}

namespace {

void AddStatementLines(const Code& code, std::set<int>& lines) {
  for (const Mark& mark : code.marks) {
    if (mark.isStatement) lines.insert(mark.at.line);
  }
}

}  // namespace

std::set<int> Engine::StatementLines(std::u16string_view source) {
  ast::Program program = Parse(source);
  auto unit = std::make_shared<Unit>();
  unit->source = std::make_shared<const std::u16string>(source);
  Symbols symbols;
  std::set<int> lines;
  AddStatementLines(*CompileTopLevel(symbols, *unit, program), lines);
  const auto add = [&](std::vector<ast::Procedure>& procedures) {
    for (ast::Procedure& tree : procedures) {
      ProcedureSlot slot{tree.name, std::make_shared<ast::Procedure>(std::move(tree)), unit, nullptr, {}};
      AddStatementLines(*CompileProcedure(symbols, slot), lines);
    }
  };
  add(program.procedures);
  for (ast::Class& made : program.classes) add(made.procedures);
  return lines;
}

}  // namespace quarlin::vbs
