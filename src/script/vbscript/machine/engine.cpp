// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/machine/engine.h"

#include "script/vbscript/machine/machine.h"
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

}  // namespace quarlin::vbs
