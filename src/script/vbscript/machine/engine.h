// SPDX-License-Identifier: GPL-3.0-or-later
// The interpreter as its host uses it: add objects and code, then run procedures by name.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/services.h"
#include "script/vbscript/machine/debug.h"

namespace quarlin::vbs {

class Machine;

struct EngineLimits {
  std::size_t callDepth = 10'000;    // nested calls; beyond it error 28
  std::uint64_t steps = 0;           // of effort.h, until the run is stopped; 0: no bound
  std::size_t births = 10'000;       // objects made until circles among them are looked for
  std::int64_t stepsPerLook = 5000;  // between two questions whether it may go on
};

class Engine {
 public:
  explicit Engine(Services& services, EngineLimits limits = {});
  ~Engine();

  // A named global of every script that is added. With `membersAreGlobal` its members can be used
  // without its name; of two that have the same member the one added first has it.
  void AddObject(std::u16string_view name, const ObjectRef& object, bool membersAreGlobal);

  // Compiles the text as a whole, then runs its top-level statements. Throws ScriptError; after a compile
  // error nothing of the text counts.
  void AddCode(std::u16string_view source);

  // Compiles and throws away.
  static void Check(std::u16string_view source);

  bool HasProcedure(std::u16string_view name) const;

  // Runs a Sub or Function. Error 13 when there is none of that name. Yields where the script does.
  Value Run(std::u16string_view name, Arguments arguments = {});

  // What CreateObject makes. Error 429 for a name that is not known.
  ObjectRef Make(std::u16string_view programId);

  // Who follows the script from now on, null for nobody, and where it is told of it; both also from within
  // its calls. The hook outlives the engine, or is taken away before. Stops are forgotten with it.
  void SetDebugHook(DebugHook* hook);
  void StopAt(StopsAt stops);

  // The innermost procedure of the script's own text that runs, whether anybody follows it or not; line 0
  // while none does.
  CallView Where() const;

  // The lines of a text at which a statement begins that can be stopped at. Throws ScriptError.
  static std::set<int> StatementLines(std::u16string_view source);

 private:
  std::unique_ptr<Machine> machine_;
};

}  // namespace quarlin::vbs
