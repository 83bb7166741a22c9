// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript_engine.h"

namespace quarlin {

void VbscriptEngine::AddObject(std::u16string_view name, const vbs::ObjectRef& object) {
  engine_.AddObject(name, object, true);
}

void VbscriptEngine::AddCode(std::u16string_view source) {
  engine_.AddCode(source);
}

void VbscriptEngine::Check(std::u16string_view source) {
  vbs::Engine::Check(source);
}

bool VbscriptEngine::HasProcedure(std::u16string_view name) const {
  return engine_.HasProcedure(name);
}

void VbscriptEngine::Run(std::u16string_view name) {
  engine_.Run(name);
}

vbs::ObjectRef VbscriptEngine::Make(std::u16string_view programId) {
  return engine_.Make(programId);
}

}  // namespace quarlin
