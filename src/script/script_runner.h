// SPDX-License-Identifier: GPL-3.0-or-later
// One script that is loaded, with the objects that it sees. No alarm of the program fires while any of its
// code runs, but for the waits that it asks for; and the engine lives until the last of its calls has
// returned, whatever that call does.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "script/run_guard.h"
#include "script/script_debugger.h"
#include "script/script_engine.h"
#include "script/timed_prompts.h"

namespace quarlin {

// Whether the code that is run may wait while the program goes on: not where the program's own work stands
// still until it returns.
enum class MayWait { No, Yes };

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

  // Throws away all code. A call that is on the stack still returns in order; one that rests ends there.
  void Stop();

  bool Loaded() const { return engine_ != nullptr; }
  bool Has(std::u16string_view procedure) const { return engine_ && engine_->HasProcedure(procedure); }

  // What CreateObject makes in the loaded script. Throws ScriptError.
  vbs::ObjectRef Make(std::u16string_view programId) const { return engine_->Make(programId); }

  // Throws ScriptError. Yields. Does nothing where no script is loaded.
  void Run(std::u16string_view procedure, MayWait mayWait = MayWait::No);

  // The file that was started last.
  const std::filesystem::path& File() const { return file_; }

  // For objects of the script, all of these while its code is on the stack. Wait lets the program go on
  // until `done`, or the instant has passed: then false. Error 5 where the code may not wait. When the script
  // is stopped meanwhile, or has been, or the program ends, it does not return to the script: see Leave.
  bool Wait(const std::function<bool()>& done, Instant deadline);
  void RequireWait() const;  // throws that error 5

  // Ends the call on the stack at once, in order and without an error. Nothing of the script can prevent it.
  [[noreturn]] void Leave();

  // From here on nothing happens any more before a waiting script has gone on.
  void EndWait();

  // The same, for good: the program is about to end. A script that stands ends there.
  void ForbidWaits();
  bool WaitsForbidden() const { return waitsForbidden_; }

  // Code of the script is on the stack; it waits there; it does nothing there, so that whatever happens is
  // somebody else's doing.
  bool Running() const { return calls_ > 0; }
  bool Waiting() const { return pause_ != nullptr; }
  bool Rests() const { return Waiting() || debugger_.Stands() || userIsIn_; }

  // For people: "weigh.vbs is at line 42, in Task", as much of it as is known.
  std::string Whereabouts() const;

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
  class Pause;

  bool LetUserIn();
  void LeaveIfStopped();
  template <class Work>
  void UntilLeft(Work work);
  std::shared_ptr<ScriptEngine> MakeEngine(std::string_view language);

  EventLoop& loop_;
  TimedPrompts& prompts_;
  RunGuard guard_;
  ScriptDebugger debugger_;
  std::unique_ptr<Services> services_;
  EngineFactory engines_;
  std::vector<NamedObject> objects_;
  std::shared_ptr<ScriptEngine> engine_;  // shared with the calls on the stack
  std::filesystem::path file_;
  int calls_ = 0;
  MayWait mayWait_ = MayWait::No;  // of the outermost call
  Pause* pause_ = nullptr;         // of a wait on the stack
  bool leaves_ = false;            // the error on its way out is none
  bool userIsIn_ = false;          // in the middle of what the script computes
  bool waitsForbidden_ = false;
};

}  // namespace quarlin
