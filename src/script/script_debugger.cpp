// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_debugger.h"

#include <algorithm>
#include <utility>

#include "script/values/conversions.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr Duration longEnough = 24h * 365;  // nobody leaves a script standing for longer
constexpr Duration longestEvaluation = 2s;

std::optional<int> LineAtOrBehind(const std::set<int>& lines, int line) {
  const auto found = lines.lower_bound(line);
  return found == lines.end() ? std::nullopt : std::optional(*found);
}

[[noreturn]] void ThrowEnd() {
  vbs::ThrowStopped(u"The script was ended while it stood");
}

std::vector<ShownValue> ShowAll(std::vector<vbs::NamedValue> values) {
  std::vector<ShownValue> shown;
  shown.reserve(values.size());
  for (vbs::NamedValue& named : values) shown.push_back(Show(std::move(named.name), std::move(named.value)));
  return shown;
}

}  // namespace

ScriptDebugger::EvaluationTime::EvaluationTime(ScriptDebugger& debugger) : debugger_(debugger) {
  debugger_.evaluationEnd_ = debugger_.loop_.Now() + longestEvaluation;
}

void ScriptDebugger::Follow(vbs::Engine* engine, const std::filesystem::path& file, std::u16string source) {
  engine_ = engine;
  file_ = engine == nullptr ? std::filesystem::path() : file;
  source_ = std::move(source);
  lines_.reset();
  told_.reset();
  ended_ = false;
  TakeBreakpoints(BreakpointsOf(file_));
}

// While it stands the engine is needed once more: Class_Terminate swallows errors, and whatever goes on
// behind one is to end, too.
void ScriptDebugger::Leave() {
  file_.clear();
  if (standing_ != nullptr) {
    ended_ = true;
    return SetCourse(Course::Into);
  }
  if (told_) engine_->SetDebugHook(nullptr);
  LetGo();
}

void ScriptDebugger::LetGo() {
  told_.reset();
  engine_ = nullptr;
  active_.clear();
  runTo_ = 0;
  SetCourse(Course::Go);
}

void ScriptDebugger::SetBreakpoints(const std::filesystem::path& file, std::vector<Breakpoint> breakpoints) {
  MoveBreakpoints(file, std::move(breakpoints));
  if (engine_ != nullptr && file == file_) TakeBreakpoints(breakpoints_[file]);
}

void ScriptDebugger::MoveBreakpoints(const std::filesystem::path& file, std::vector<Breakpoint> breakpoints) {
  breakpoints_[file] = std::move(breakpoints);
}

std::vector<Breakpoint> ScriptDebugger::BreakpointsOf(const std::filesystem::path& file) const {
  const auto found = breakpoints_.find(file);
  return found == breakpoints_.end() ? std::vector<Breakpoint>() : found->second;
}

std::optional<int> ScriptDebugger::LineToStandAt(std::u16string_view source, int line) {
  try {
    return LineAtOrBehind(vbs::Engine::StatementLines(source), line);
  } catch (const vbs::ScriptError&) {
    return line;
  }
}

void ScriptDebugger::SetErrorStops(ErrorStops stops) {
  errorStops_ = stops;
  TellEngine();
}

void ScriptDebugger::Go() {
  SetCourse(Course::Go);
  if (!Stands()) OnChange();
}

void ScriptDebugger::StepInto() {
  SetCourse(Course::Into);
}

void ScriptDebugger::StepOver() {
  SetCourse(Course::Over);
}

void ScriptDebugger::StepOut() {
  SetCourse(stepDepth_ > 1 ? Course::Out : Course::Go);
}

void ScriptDebugger::RunTo(int line) {
  runTo_ = RunningLine(line).value_or(0);
  SetCourse(Course::Go);
}

void ScriptDebugger::Pause() {
  SetCourse(Course::Into);
  OnChange();
}

void ScriptDebugger::SetCourse(Course course) {
  course_ = course;
  goesOn_ = true;
  TellEngine();
}

// A line of the running text where it can be stopped at.
std::optional<int> ScriptDebugger::RunningLine(int line) {
  if (!lines_) {
    try {
      lines_ = vbs::Engine::StatementLines(source_);
    } catch (const vbs::ScriptError&) {
      lines_.emplace();  // it will not run either
    }
  }
  return LineAtOrBehind(*lines_, line);
}

void ScriptDebugger::TakeBreakpoints(const std::vector<Breakpoint>& breakpoints) {
  active_.clear();
  for (const Breakpoint& breakpoint : breakpoints) {
    if (const auto line = RunningLine(breakpoint.line)) active_.try_emplace(*line, breakpoint.condition);
  }
  TellEngine();
}

// Not while it stands: what is on the stack belongs to what the engine was told before.
void ScriptDebugger::TellEngine() {
  if (engine_ == nullptr || standing_ != nullptr) return;
  vbs::StopsAt stops{course_ != Course::Go, {}};
  for (const auto& [line, condition] : active_) stops.lines.insert(line);
  if (runTo_ != 0) stops.lines.insert(runTo_);
  const bool follows = !stops.None() || errorStops_ != ErrorStops::None;
  if (follows != told_.has_value()) engine_->SetDebugHook(follows ? this : nullptr);
  if (!follows) {
    told_.reset();
  } else if (told_ != stops) {
    told_ = stops;
    engine_->StopAt(std::move(stops));
  }
}

bool ScriptDebugger::StepIsDone(std::size_t depth) const {
  switch (course_) {
    case Course::Into:
      return true;
    case Course::Over:
      return depth <= stepDepth_;
    case Course::Out:
      return depth < stepDepth_;
    case Course::Go:
      break;
  }
  return false;
}

void ScriptDebugger::AtStatement(vbs::Standing& standing) {
  if (ended_) ThrowEnd();
  if (engine_ == nullptr || standing_ != nullptr || prompts_.Dismissed()) return;
  const int line = standing.CallAt(0).at.line;
  if (StepIsDone(standing.Depth()) || line == runTo_) return Stand(standing, {});
  const auto breakpoint = active_.find(line);
  if (breakpoint == active_.end()) return;
  std::u16string why;
  if (Holds(standing, breakpoint->second, why)) Stand(standing, std::move(why));
}

// A condition that cannot be found out holds, and tells why.
bool ScriptDebugger::Holds(vbs::Standing& standing, const std::u16string& condition, std::u16string& why) {
  if (condition.empty()) return true;
  const EvaluationTime time(*this);
  try {
    return vbs::ToBool(standing.Evaluate(0, condition));
  } catch (const vbs::ScriptError& error) {
    why = u"the condition " + condition + u": " + error.FullDescription();
    return true;
  }
}

void ScriptDebugger::AtError(vbs::Standing& standing, const vbs::ScriptError& error, bool caught) {
  if (engine_ == nullptr || standing_ != nullptr || prompts_.Dismissed()) return;
  if (errorStops_ == ErrorStops::None || (caught && errorStops_ == ErrorStops::Uncaught)) return;
  Stand(standing, error.FullDescription());
}

void ScriptDebugger::Stand(vbs::Standing& standing, std::u16string why) {
  std::size_t call = 0;
  while (call + 1 < standing.Depth() && !standing.CallAt(call).ofScript) ++call;
  place_ = {file_, standing.CallAt(call).at.line, std::move(why)};
  stepDepth_ = standing.Depth();
  runTo_ = 0;
  goesOn_ = false;
  standing_ = &standing;
  Yield();
  standing_ = nullptr;
  TellEngine();
  if (ended_) LetGo();
  OnGo();
  OnChange();
  if (ended_ || prompts_.Dismissed()) ThrowEnd();  // the latter: the program ends
}

void ScriptDebugger::Yield() {
  const TimedPrompts::OthersTime notTheScripts(prompts_);
  const Instant begin = loop_.Now();
  const std::uint64_t settings = loop_.Alarms().Settings();
  OnStand();
  OnChange();
  loop_.WaitUntil([this] { return goesOn_ || prompts_.Dismissed(); }, begin + longEnough);
  loop_.Alarms().Postpone(settings, loop_.Now() - begin);
}

std::vector<ShownValue> ScriptDebugger::Locals(std::size_t call) const {
  return ShowAll(standing_->Locals(call));
}

std::vector<ShownValue> ScriptDebugger::Globals() const {
  return ShowAll(standing_->Globals());
}

ShownValue ScriptDebugger::Evaluate(std::size_t call, std::u16string_view expression) {
  std::u16string name(expression);
  if (Evaluating()) return ShowFailure(std::move(name), u"another expression is being evaluated");
  const EvaluationTime time(*this);
  try {
    return Show(std::move(name), standing_->Evaluate(call, expression));
  } catch (const vbs::ScriptError& error) {
    return ShowFailure(std::u16string(expression), error.FullDescription());
  }
}

}  // namespace quarlin
