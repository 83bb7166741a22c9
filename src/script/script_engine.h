// SPDX-License-Identifier: GPL-3.0-or-later
// What the host asks of a script language: one engine for each script that is switched on.
//
// Everything throws vbs::ScriptError with the language's own number, description and source, and with the
// place in the script, where it is known.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/services.h"

namespace quarlin {

namespace vbs {
class Engine;
}

class ScriptEngine {
 public:
  virtual ~ScriptEngine() = default;

  // A named global whose members can also be used without its name; of two objects that have the same
  // member the one added first has it.
  virtual void AddObject(std::u16string_view name, const vbs::ObjectRef& object) = 0;

  // Compiles the whole text, then runs its top-level code. After a compile error nothing of it counts.
  virtual void AddCode(std::u16string_view source) = 0;

  // Compiles and throws away.
  virtual void Check(std::u16string_view source) = 0;

  virtual bool HasProcedure(std::u16string_view name) const = 0;

  // Without arguments; the result is thrown away. Error 13 when there is none of that name. Yields where
  // the script does; the engine must not end before it has returned.
  virtual void Run(std::u16string_view name) = 0;

  // What CreateObject makes in a script of this engine. Error 429 for a name that is not known.
  virtual vbs::ObjectRef Make(std::u16string_view programId) = 0;

  // What a debugger can follow; null for a language that it cannot be followed in.
  virtual vbs::Engine* Followable() { return nullptr; }
};

// Makes an engine for "VBScript" or "JScript"; null for a language that this program has not. The
// services outlive the engine.
using EngineFactory =
    std::function<std::unique_ptr<ScriptEngine>(std::string_view language, vbs::Services& services)>;

}  // namespace quarlin
