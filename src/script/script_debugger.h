// SPDX-License-Identifier: GPL-3.0-or-later
// The debugger of the user's script: where it is to stand, and what can be seen and done while it stands.
//
// A stand is a yield in the middle of the script: the window lives, the devices are read into their buffers,
// and no tick runs. The time does not count: not as the script's own, and alarms that were set before go off
// as much later. So a deadline has what it had left.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "controls/event_loop.h"
#include "script/shown_value.h"
#include "script/timed_prompts.h"
#include "script/vbscript/machine/engine.h"

namespace quarlin {

struct Breakpoint {
  int line = 0;              // from 1
  std::u16string condition;  // an expression that must be true; empty: always

  bool operator==(const Breakpoint&) const = default;
};

enum class ErrorStops { None, Uncaught, All };

// Where the script stands, and why when it is for another reason than a breakpoint or a step.
struct ScriptPlace {
  std::filesystem::path file;
  int line = 0;
  std::u16string why;
};

class ScriptDebugger final : private vbs::DebugHook {
 public:
  ScriptDebugger(EventLoop& loop, TimedPrompts& prompts) : loop_(loop), prompts_(prompts) {}

  // Told when the script begins to stand and when it goes on, one for the program and one for the window,
  // which is told of a pause, too.
  Hook<void()> OnStand;
  Hook<void()> OnGo;
  Hook<void()> OnChange;

  // The runner's: a script is about to run, or ends. Without an engine it is one that cannot be followed.
  // While it stands, Leave ends it there with a final error.
  void Follow(vbs::Engine* engine, const std::filesystem::path& file, std::u16string source);
  void Leave();

  // The script that runs, as far as it can be followed; empty without one.
  const std::filesystem::path& Followed() const { return file_; }

  // The text that was started last, in whatever language.
  const std::u16string& StartedText() const { return source_; }

  // The breakpoints of a file, in ascending order, kept until the program ends. In a script that runs they
  // count at once.
  void SetBreakpoints(const std::filesystem::path& file, std::vector<Breakpoint> breakpoints);
  std::vector<Breakpoint> BreakpointsOf(const std::filesystem::path& file) const;

  // The same breakpoints in a text that has been edited since the script was started: it keeps its own.
  void MoveBreakpoints(const std::filesystem::path& file, std::vector<Breakpoint> breakpoints);

  // The line of the text, this one or one behind it, where a script can stand; nothing where there is none.
  // In a text that does not compile every line counts.
  static std::optional<int> LineToStandAt(std::u16string_view source, int line);

  void SetErrorStops(ErrorStops stops);

  // Each lets a script that stands go on. At its outermost procedure's end a step leads to the next
  // procedure that the program calls.
  void Go();
  void StepInto();
  void StepOver();
  void StepOut();
  void RunTo(int line);  // also while it runs

  // Stands at the next statement, of whatever procedure that is. Go takes that back.
  void Pause();
  bool Pausing() const { return !Stands() && course_ == Course::Into; }

  // While it stands.
  bool Stands() const { return standing_ != nullptr; }
  const ScriptPlace& Place() const { return place_; }
  std::size_t Depth() const { return standing_->Depth(); }
  vbs::CallView CallAt(std::size_t call) const { return standing_->CallAt(call); }
  std::vector<ShownValue> Locals(std::size_t call) const;
  std::vector<ShownValue> Globals() const;
  ShownValue Evaluate(std::size_t call, std::u16string_view expression);  // named by its text

  // Code of the script runs for the sake of an expression; and whether it may go on doing so.
  bool Evaluating() const { return evaluationEnd_.has_value(); }
  bool EvaluationMayGoOn() const { return loop_.Now() < *evaluationEnd_; }

 private:
  enum class Course { Go, Into, Over, Out };

  void AtStatement(vbs::Standing& standing) override;
  void AtError(vbs::Standing& standing, const vbs::ScriptError& error, bool caught) override;

  // While it lives, an expression is evaluated.
  class EvaluationTime {
   public:
    explicit EvaluationTime(ScriptDebugger& debugger);
    ~EvaluationTime() { debugger_.evaluationEnd_.reset(); }
    EvaluationTime(const EvaluationTime&) = delete;
    EvaluationTime& operator=(const EvaluationTime&) = delete;

   private:
    ScriptDebugger& debugger_;
  };

  bool StepIsDone(std::size_t depth) const;
  bool Holds(vbs::Standing& standing, const std::u16string& condition, std::u16string& why);
  void Stand(vbs::Standing& standing, std::u16string why);
  void LetGo();
  void Yield();
  void SetCourse(Course course);
  std::optional<int> RunningLine(int line);
  void TakeBreakpoints(const std::vector<Breakpoint>& breakpoints);
  void TellEngine();

  EventLoop& loop_;
  TimedPrompts& prompts_;
  std::map<std::filesystem::path, std::vector<Breakpoint>> breakpoints_;
  ErrorStops errorStops_ = ErrorStops::None;

  vbs::Engine* engine_ = nullptr;
  std::filesystem::path file_;
  std::u16string source_;                 // the text that was started last
  std::optional<std::set<int>> lines_;    // where it can be stopped at, once that was asked
  std::map<int, std::u16string> active_;  // its breakpoints: line and condition
  std::optional<vbs::StopsAt> told_;      // what the engine was told last; nothing: it is not followed
  Course course_ = Course::Go;
  std::size_t stepDepth_ = 0;  // of the procedure that it stood in last
  int runTo_ = 0;
  bool ended_ = false;

  vbs::Standing* standing_ = nullptr;
  ScriptPlace place_;
  bool goesOn_ = false;
  std::optional<Instant> evaluationEnd_;
};

}  // namespace quarlin
