// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_runner.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "base/scope_flag.h"
#include "base/text.h"
#include "script/script_file.h"
#include "script/script_text.h"
#include "script/vbscript/machine/engine.h"

namespace quarlin {

class ScriptRunner::Services : public vbs::Services {
 public:
  Services(ScriptRunner& runner, TimedPrompts& prompts, std::filesystem::path folder)
      : loop_(runner.loop_),
        prompts_(prompts),
        guard_(runner.guard_),
        debugger_(runner.debugger_),
        folder_(std::move(folder)) {}

  const Clock& Time() const override { return loop_.Clocks(); }
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override {
    return prompts_.MsgBox(text, style, title);
  }
  std::optional<std::u16string> InputBox(std::u16string_view prompt, std::u16string_view title,
                                         std::u16string_view proposal) override {
    return prompts_.InputBox(prompt, title, proposal);
  }
  std::filesystem::path Folder() const override { return folder_; }
  const vbs::Locale& StartLocale() const override { return *startLocale; }
  bool MayGoOn() override {
    if (debugger_.Evaluating()) return debugger_.EvaluationMayGoOn() && !guard_.MustStop();
    return guard_.MayGoOn();
  }
  bool MustStop() const override { return guard_.MustStop(); }
  vbs::Patrol* Outside() override { return &guard_.Outside(); }

  const vbs::Locale* startLocale = &vbs::UsualLocale();

 private:
  const EventLoop& loop_;
  TimedPrompts& prompts_;
  RunGuard& guard_;
  const ScriptDebugger& debugger_;
  std::filesystem::path folder_;
};

// For as long as code of the script may run.
class ScriptRunner::Call {
 public:
  explicit Call(ScriptRunner& runner, MayWait mayWait = MayWait::No)
      : runner_(runner), hold_(std::in_place, runner.loop_.Alarms()) {
    if (runner_.calls_++ > 0) return;
    runner_.mayWait_ = mayWait;
    runner_.leaves_ = false;
    runner_.guard_.Begin();
  }
  ~Call() {
    if (--runner_.calls_ == 0) runner_.guard_.End();
    hold_.reset();
    runner_.loop_.AlarmSet();  // what became due meanwhile is waited for again
  }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

 private:
  ScriptRunner& runner_;
  std::optional<AlarmQueue::Hold> hold_;
  // Where another script waits further out, its locale is not this one's.
  vbs::LocaleChoice usual_{vbs::UsualLocale()};
  vbs::LocaleScope locale_{usual_};
};

// A wait on the stack. Once it is over, no alarm fires before the script has gone on; but where the user has
// a box open, the wait cannot return until it is closed, and the program goes on behind it.
class ScriptRunner::Pause {
 public:
  explicit Pause(ScriptRunner& runner) : runner_(runner), notTheScripts_(runner.prompts_) {
    runner_.pause_ = this;
    runner_.guard_.Rest();
  }
  ~Pause() {
    runner_.guard_.GoOn();
    runner_.pause_ = nullptr;
  }
  Pause(const Pause&) = delete;
  Pause& operator=(const Pause&) = delete;

  void End() {
    isOver_ = true;
    if (!hold_ && !runner_.prompts_.IsNested()) hold_.emplace(runner_.loop_.Alarms());
  }
  bool IsOver() const { return isOver_; }

 private:
  ScriptRunner& runner_;
  const TimedPrompts::OthersTime notTheScripts_;
  bool isOver_ = false;
  std::optional<AlarmQueue::Hold> hold_;
};

ScriptRunner::ScriptRunner(EventLoop& loop, TimedPrompts& prompts, std::filesystem::path folder,
                           EngineFactory engines, LastResort lastResort)
    : loop_(loop),
      prompts_(prompts),
      guard_(loop, prompts, std::move(lastResort)),
      debugger_(loop, prompts),
      services_(std::make_unique<Services>(*this, prompts, std::move(folder))),
      engines_(std::move(engines)) {
  guard_.OnLongCall = [this] { return LetUserIn(); };
  guard_.Whereabouts = [this] { return Whereabouts(); };
}

ScriptRunner::~ScriptRunner() {
  guard_.OnLongCall = nullptr;  // the windows are about to go, too
  Stop();
}

void ScriptRunner::StartWith(const vbs::Locale& locale) {
  services_->startLocale = &locale;
}

void ScriptRunner::AddObject(std::u16string_view name, vbs::ObjectRef object) {
  objects_.push_back({std::u16string(name), std::move(object)});
}

std::shared_ptr<ScriptEngine> ScriptRunner::MakeEngine(std::string_view language) {
  std::shared_ptr<ScriptEngine> engine = engines_ ? engines_(language, *services_) : nullptr;
  if (!engine) throw vbs::ScriptError(vbs::cannotCreateObject, Utf16FromBytes(language));
  return engine;
}

namespace {

// Hands on the text of a file. Where a character of it has no place in a script, the error tells as what the
// file was read: that may be what is wrong.
template <class Use>
void UseScript(const std::filesystem::path& file, Use use) {
  const ScriptText script = ReadScript(file);
  try {
    use(script.text);
  } catch (vbs::ScriptError& error) {
    if (error.culprit.starts_with(u"U+")) {
      error.description += u" (the file was read as " + Utf16FromBytes(script.encoding) + u")";
    }
    throw;
  }
}

}  // namespace

// The error that ends a script that leaves is none to its callers.
template <class Work>
void ScriptRunner::UntilLeft(Work work) {
  try {
    work();
  } catch (const vbs::ScriptError& error) {
    if (!error.isFinal || !leaves_) throw;
  }
}

void ScriptRunner::Start(const std::filesystem::path& file) {
  const Call call(*this, MayWait::Yes);
  const auto engine = MakeEngine(LanguageOf(file.filename().string()));
  engine_ = engine;
  file_ = file;
  for (const NamedObject& named : objects_) engine->AddObject(named.name, named.object);
  UseScript(file, [&](const std::u16string& text) {
    debugger_.Follow(engine->Followable(), file, text);
    UntilLeft([&] { engine->AddCode(text); });
  });
}

void ScriptRunner::Check(const std::filesystem::path& file) {
  UseScript(file, [&](std::u16string_view text) { CheckText(LanguageOf(file.filename().string()), text); });
}

void ScriptRunner::CheckText(std::string_view language, std::u16string_view text) {
  MakeEngine(language)->Check(text);
}

// The end of the engine may run code of the script, too.
void ScriptRunner::Stop() {
  const Call call(*this);
  if (debugger_.Stands()) leaves_ = true;
  debugger_.Leave();
  engine_.reset();
  EndWait();
}

void ScriptRunner::Run(std::u16string_view procedure, MayWait mayWait) {
  if (!engine_) return;
  const Call call(*this, mayWait);
  const auto engine = engine_;
  UntilLeft([&] { engine->Run(procedure); });
}

void ScriptRunner::RequireWait() const {
  if (calls_ == 1 && mayWait_ == MayWait::Yes && !Waiting() && !debugger_.Evaluating()) return;
  vbs::ScriptError error(vbs::invalidCall);
  error.description = u"A script may wait only in its top-level code, in InitTask and in Task";
  throw error;
}

bool ScriptRunner::Wait(const std::function<bool()>& done, Instant deadline) {
  RequireWait();
  LeaveIfStopped();
  {
    Pause pause(*this);
    loop_.RunUntil([&] { return pause.IsOver() || done(); }, deadline);
  }
  LeaveIfStopped();
  return done();
}

// Whoever has switched the script off meanwhile, or closed the program, does not want it to compute on.
bool ScriptRunner::LetUserIn() {
  const bool wasLoaded = Loaded();
  {
    const ScopeFlag in(userIsIn_);
    loop_.DoEvents();
  }
  if ((wasLoaded && !Loaded()) || prompts_.Dismissed()) leaves_ = true;
  return !leaves_;
}

std::string ScriptRunner::Whereabouts() const {
  std::string file = BytesFromUtf8(file_.filename().string());
  vbs::Engine* followed = engine_ ? engine_->Followable() : nullptr;
  const vbs::CallView call = followed != nullptr ? followed->Where() : vbs::CallView{};
  if (call.at.line == 0) return file;
  return fmt::format("{} is at line {}, in {}", file, call.at.line,
                     call.procedure.empty() ? "its top-level code" : BytesFromUtf16(call.procedure));
}

void ScriptRunner::LeaveIfStopped() {
  if (!engine_ || waitsForbidden_) Leave();
}

void ScriptRunner::Leave() {
  leaves_ = true;
  vbs::ThrowStopped(u"The script has ended");
}

void ScriptRunner::EndWait() {
  if (pause_ != nullptr) pause_->End();
}

void ScriptRunner::ForbidWaits() {
  waitsForbidden_ = true;
  if (debugger_.Stands()) leaves_ = true;
  EndWait();
}

}  // namespace quarlin
