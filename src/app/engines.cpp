// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/engines.h"

#include "script/jscript/engine.h"
#include "script/vbscript_engine.h"

namespace quarlin {

std::unique_ptr<ScriptEngine> MakeEngine(std::string_view language, vbs::Services& services) {
  if (language == "VBScript") return std::make_unique<VbscriptEngine>(services);
  if (language == "JScript") return std::make_unique<jscript::Engine>(services);
  return nullptr;
}

}  // namespace quarlin
