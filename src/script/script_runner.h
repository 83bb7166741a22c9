// SPDX-License-Identifier: GPL-3.0-or-later
// One script that is loaded, with the objects that it sees. No alarm of the program fires while any of its
// code runs, and the engine lives until the last of its calls has returned, whatever that call does.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "script/run_guard.h"
#include "script/script_debugger.h"
#include "script/script_engine.h"
#include "script/timed_prompts.h"

namespace quarlin {

class ScriptRunner {
 public:
  struct NamedObject {
    std::u16string name;
    vbs::ObjectRef object;
  };

  // `folder` is where the script's own file names begin.
  ScriptRunner(EventLoop& loop, TimedPrompts& prompts, std::filesystem::path folder, EngineFactory engines,
               LastResort lastResort = {});
  ~ScriptRunner();

  // An object of every script that is started from now on.
  void AddObject(std::u16string_view name, vbs::ObjectRef object);
  const std::vector<NamedObject>& Objects() const { return objects_; }  // in that order

  // Scripts that are started from now on begin with it; en-us until then.
  void StartWith(const vbs::Locale& locale);

  // Makes an engine for the file's language and runs the script's top-level code. Throws ScriptError, also
  // where the file cannot be read; the engine then stays until Stop. Yields.
  void Start(const std::filesystem::path& file);

  // Compiles the file and throws the result away; throws ScriptError.
  void Check(const std::filesystem::path& file);

  // The same of a text in "VBScript" or "JScript".
  void CheckText(std::string_view language, std::u16string_view text);

  // Throws away all code. A call that is on the stack still returns in order.
  void Stop();

  bool Loaded() const { return engine_ != nullptr; }
  bool Has(std::u16string_view procedure) const { return engine_ && engine_->HasProcedure(procedure); }

  // Throws ScriptError. Yields. Does nothing where no script is loaded.
  void Run(std::u16string_view procedure);

  // Code of the script is on the stack.
  bool Running() const { return calls_ > 0; }

  // The user, or the lack of one, stopped the last call because it took too long; or the end of the program
  // did.
  bool WasStopped() const { return guard_.Stopped(); }

  // The program is to end: what runs has little time left, and no script should be run any more but for its
  // last word. True by itself as soon as a running script meets such a signal.
  void EndProgram() { guard_.EndProgram(); }
  bool ProgramEnds() const { return guard_.Ending(); }

  // Follows whatever script is started.
  ScriptDebugger& Debugger() { return debugger_; }

 private:
  class Call;
  class Services;

  std::shared_ptr<ScriptEngine> MakeEngine(std::string_view language);

  EventLoop& loop_;
  RunGuard guard_;
  ScriptDebugger debugger_;
  std::unique_ptr<Services> services_;
  EngineFactory engines_;
  std::vector<NamedObject> objects_;
  std::shared_ptr<ScriptEngine> engine_;  // shared with the calls on the stack
  int calls_ = 0;
};

}  // namespace quarlin
