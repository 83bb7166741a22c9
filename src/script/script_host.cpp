// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_host.h"

#include <fmt/format.h>

#include <array>

#include "base/enum_table.h"
#include "base/profile_file.h"
#include "base/text.h"
#include "script/command_object.h"
#include "script/script_file.h"
#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

constexpr std::u16string_view defaultTitle = u"Quarlin";

struct HookName {
  ScriptHook hook;
  std::u16string_view name;
};
constexpr auto hookNames = std::to_array<HookName>({{ScriptHook::ReceiveChar, u"ReceiveChar"},
                                                    {ScriptHook::ReceiveString, u"ReceiveString"},
                                                    {ScriptHook::SendString, u"SendString"}});
static_assert(StandInOrder(hookNames, &HookName::hook, ScriptHook::SendString));

}  // namespace

std::u16string_view NameOf(ScriptHook hook) {
  return hookNames[static_cast<std::size_t>(hook)].name;
}

std::string ErrorLine(std::u16string_view procedure, const vbs::ScriptError& error) {
  const int line = error.position.line;
  return OnOneLine(fmt::format("{}{}: {}", BytesFromUtf16(procedure),
                               line > 0 ? fmt::format(", line {}", line) : "",
                               BytesFromUtf16(error.FullDescription())));
}

std::u16string ErrorReport(std::string_view scriptFile, const vbs::ScriptError& error) {
  constexpr std::u16string_view lineEnd = u"\r\n";
  std::u16string report = u"## ERROR in ";
  report += vbs::Utf16Of(scriptFile);
  report += lineEnd;
  report += error.FullDescription();
  report += lineEnd;
  report += Utf16FromBytes(fmt::format("Line:{} Column:{}", error.position.line, error.position.column));
  for (const std::u16string& piece : {error.source, error.helpFile, error.LineText()}) {
    report += lineEnd;
    report += piece;
  }
  return report;
}

ScriptHost::ScriptHost(ScriptParts parts)
    : parts_(std::move(parts)),
      list_(parts_.loop, parts_.folder.Path(), choice_, parts_.prompts),
      panel_(parts_.loop),
      charReceived_(new SerialString),
      stringReceived_(new SerialString),
      stringToSend_(new SerialString),
      timerTask_(new TimerTask),
      enableAlarm_(parts_.loop,
                   [this] {
                     if (parts_.controls.chkEnableScript.Checked()) EnableScript();
                   }),
      runner_(parts_.loop, parts_.prompts, parts_.folder.Path(), parts_.engines, parts_.lastResort),
      waits_(parts_.loop, runner_) {
  Console.out = [this](std::u16string_view text) { parts_.append(BytesFromUtf16(text), colors::black); };
  Console.error = [this](std::u16string_view text) { parts_.append(BytesFromUtf16(text), colors::red); };
  ScriptControls& controls = parts_.controls;
  controls.chkEnableScript.Click = [this] {
    if (parts_.controls.chkEnableScript.Checked()) {
      EnableScript();
    } else {
      DisableScript();
    }
  };
  controls.cmdEditScript.OnClick = [this] { EditScript(); };
  controls.tmrTask.OnTimer = [this] { tmrTask_Timer(); };
  controls.txtScriptFile.Change = [this] {
    choice_.ScriptFile = parts_.controls.txtScriptFile.Text();
    Hooks.chosen();
  };
  list_.OnChosen = [this](const std::string& file) { TakeChoice(file); };
  panel_.OnExit = [this] { parts_.controls.chkEnableScript.SetChecked(false); };
  WireDebugger();
}

void ScriptHost::WireDebugger() {
  ScriptDebugger& debugger = runner_.Debugger();
  const auto words = [&debugger] {
    return fmt::format("waits at line {} of {} (F8)", debugger.Place().line,
                       BytesFromUtf8(debugger.Place().file.filename().string()));
  };
  debugger.OnStand = [this, words] {
    ranBefore_ = parts_.status.WhatRuns();
    parts_.status.Runs(words());
  };
  debugger.OnGo = [this, words] {
    if (parts_.status.WhatRuns() == words()) parts_.status.Runs(ranBefore_);
  };
}

// In this order: of two objects that have a member of one name, the first is meant by the name alone.
void ScriptHost::SetFormMain(vbs::ObjectRef formMain) {
  runner_.AddObject(u"AppendLog", vbs::ObjectRef(new TextString(parts_.append)));
  runner_.AddObject(u"CharReceived", vbs::ObjectRef(charReceived_.Get()));
  runner_.AddObject(u"StringReceived", vbs::ObjectRef(stringReceived_.Get()));
  runner_.AddObject(u"StringToSend", vbs::ObjectRef(stringToSend_.Get()));
  runner_.AddObject(u"TimerTask", vbs::ObjectRef(timerTask_.Get()));
  runner_.AddObject(u"FormMain", std::move(formMain));
  runner_.AddObject(u"FrmCommand", MakeCommandObject(panel_, waits_));
  runner_.AddObject(u"WScript", MakeWScriptObject(*this));
}

std::string ScriptHost::TakeUpLocale() {
  const std::string wanted = ProfileFile(parts_.folder, "position.ini").ReadProfileString("SCRIPT", "Locale");
  if (wanted.empty()) return {};
  if (const vbs::Locale* locale = vbs::FindLocale(Utf16FromBytes(wanted))) {
    runner_.StartWith(*locale);
    return {};
  }
  return fmt::format("position.ini: Locale={} is not known, scripts begin with en-us", CodedText(wanted, 40));
}

void ScriptHost::TakeChoice(const std::string& file) {
  if (!file.empty()) parts_.controls.txtScriptFile.SetText(file);
  parts_.controls.chkEnableScript.SetToolTipText(file);
  parts_.controls.cmdEditScript.SetToolTipText(file);
}

void ScriptHost::RunFile(const std::string& file) {
  StopScript();
  TakeChoice(file);
  unlisted_ = true;
  parts_.controls.chkEnableScript.SetChecked(true);
}

void ScriptHost::StopScript() {
  parts_.controls.chkEnableScript.SetChecked(false);
}

bool ScriptHost::Has(ScriptHook hook) const {
  return runner_.Has(NameOf(hook));
}

// Behind the script's own word that the program is to end, only its last word is said.
bool ScriptHost::MayCall() const {
  return !runner_.Running() && !runner_.ProgramEnds() && !finishStatus_;
}

bool ScriptHost::Sees() const {
  return parts_.controls.chkEnableScript.Checked() && MayCall();
}

void ScriptHost::OfferStrictly(ScriptHook hook, std::string& text) {
  if (!MayCall() || !runner_.Has(NameOf(hook))) return;
  const std::array<SerialString*, 3> carriers{charReceived_.Get(), stringReceived_.Get(),
                                              stringToSend_.Get()};
  SerialString& carrier = *carriers[static_cast<std::size_t>(hook)];
  carrier.SetInputString(text);
  struct TakeOutput {  // also after an error
    std::string& text;
    SerialString& carrier;
    ~TakeOutput() { text = carrier.OutputString(); }
  } const takeOutput{text, carrier};
  runner_.Run(NameOf(hook));
}

void ScriptHost::Offer(ScriptHook hook, std::string& text) {
  try {
    OfferStrictly(hook, text);
  } catch (const vbs::ScriptError& error) {
    HookFailed(hook, error);
  }
}

// What the end of the program has stopped is no error of the script, which stays for its last word.
bool ScriptHost::CutByEnd(std::u16string_view procedure, const vbs::ScriptError& error) {
  if (!error.isFinal || !runner_.ProgramEnds()) return false;
  Hooks.cutShort(fmt::format("the end of the program cut short {}", ErrorLine(procedure, error)));
  return true;
}

// One that had to be stopped would have to be stopped at every character that comes.
void ScriptHost::HookFailed(ScriptHook hook, const vbs::ScriptError& error) {
  if (CutByEnd(NameOf(hook), error)) return;
  if (error.isFinal || runner_.WasStopped()) {
    GiveUp(NameOf(hook), error);
    return;
  }
  CountError(NameOf(hook), error);
  Label& errors = parts_.controls.lblScriptErrors;
  errors.Increment();
  parts_.status.Mention(
      fmt::format("script error {} in {}", errors.Caption(), ErrorLine(NameOf(hook), error)));
}

void ScriptHost::CountError(std::u16string_view procedure, const vbs::ScriptError& error) {
  Hooks.showError(procedure, error);
  ++errors_.count;
  if (failedProcedures_.size() >= ScriptErrors::mostTexts) return;
  if (!failedProcedures_.insert(std::u16string(procedure)).second) return;
  errors_.first.push_back(ErrorLine(procedure, error));
  Hooks.firstError(fmt::format("script error in {}", errors_.first.back()));
}

void ScriptHost::EnableScript() {
  // Its procedure must return first. And what yields would not let the new one wait.
  if (runner_.Running() || parts_.loop.Alarms().Held()) {
    enableAlarm_.At(parts_.loop.Now());
    return;
  }
  if (runner_.Loaded()) return;
  startFailure_.clear();
  choice_.ScriptTopMost = false;
  choice_.ScriptShowCommand = false;
  if (!std::exchange(unlisted_, false) && !FindScript()) return;
  CheckBox& box = parts_.controls.chkEnableScript;
  if (!box.Checked() || runner_.Loaded()) return;
  if (!ScriptExists()) {
    startFailure_ = choice_.ScriptFile.empty()
                        ? "no script was chosen"
                        : fmt::format("the script {} is not there", choice_.ScriptFile);
    box.SetChecked(false);
    return;
  }
  panel_.Load();
  panel_.SetTopMost(choice_.ScriptTopMost);
  if (choice_.ScriptShowCommand) panel_.SetVisible(true);
  parts_.controls.lblScriptErrors.SetInteger(0);
  Hooks.loadedChanged();
  const bool started = Start();
  Hooks.loadedChanged();
  if (!started) return;
  Timer& task = parts_.controls.tmrTask;
  const std::int32_t interval = timerTask_->Interval();
  task.SetEnabled(false);
  task.SetInterval(interval);
  task.SetEnabled(interval > 0);
}

// By the list. False where there is nothing that it could show.
bool ScriptHost::FindScript() {
  if (ListScripts(parts_.folder.Path(), ".vbs").empty()) {
    constexpr std::string_view why = "no script runs: there is no *.vbs file in the program folder";
    parts_.status.Say(why);
    startFailure_ = why;
    if (!list_.HasView()) parts_.prompts.ShowMessage(why, "SCRIPT");  // nobody sees the status bar
    return false;
  }
  ChooseScript();
  return true;
}

void ScriptHost::ChooseScript() {
  if (list_.HasView()) {
    list_.Load();
    list_.ShowModal();
  } else if (!ScriptExists()) {
    parts_.prompts.ShowMessage(choice_.ScriptFile.empty()
                                   ? "no script was chosen; scripting is switched off"
                                   : choice_.ScriptFile + " is not there; scripting is switched off",
                               "SCRIPT");
  }
}

bool ScriptHost::ScriptExists() const {
  std::error_code ignored;
  return !choice_.ScriptFile.empty() && std::filesystem::is_regular_file(ScriptPath(), ignored);
}

// False when the script did not come so far as to run.
bool ScriptHost::Start() {
  try {
    runner_.Start(ScriptPath());
  } catch (const vbs::ScriptError& error) {
    startFailure_ = fmt::format("the script {} does not run", choice_.ScriptFile);
    if (!CutByEnd(u"its top-level code", error)) GiveUp(u"its top-level code", error);
    return false;
  }
  if (runner_.WaitsForbidden()) return false;  // the program ends
  if (RunReported(u"InitTask") && runner_.Loaded()) return true;
  startFailure_ = fmt::format("the script {} did not get through InitTask", choice_.ScriptFile);
  return false;
}

void ScriptHost::DisableScript() {
  enableAlarm_.Cancel();
  parts_.controls.tmrTask.SetEnabled(false);
  parts_.controls.tmrTask.SetInterval(0);
  runner_.Stop();
  Hooks.loadedChanged();
}

// A procedure that the script does not have is none to run.
bool ScriptHost::RunReported(std::u16string_view procedure) {
  if (!runner_.Has(procedure)) return true;
  try {
    runner_.Run(procedure, MayWait::Yes);
    return true;
  } catch (const vbs::ScriptError& error) {
    if (!CutByEnd(procedure, error)) GiveUp(procedure, error);
    return false;
  }
}

// The box shows the error, so the count alone remains to be told.
void ScriptHost::ShowScriptError(std::u16string_view procedure, const vbs::ScriptError& error) {
  ++errors_.count;
  if (errors_.first.size() < ScriptErrors::mostTexts) errors_.first.push_back(ErrorLine(procedure, error));
  if (Hooks.showError(procedure, error)) return;
  parts_.prompts.MsgBox(ErrorReport(choice_.ScriptFile, error), stopIcon, defaultTitle);
}

// Whoever answered the question has the main window in front.
void ScriptHost::TellStopped(const vbs::ScriptError& error) {
  const int line = error.position.line;
  parts_.status.Say(fmt::format("{} was stopped{}: it did not respond", BytesFromUtf8(choice_.ScriptFile),
                                line > 0 ? fmt::format(" at line {}", line) : ""));
}

void ScriptHost::GiveUp(std::u16string_view procedure, const vbs::ScriptError& error) {
  if (runner_.WasStopped()) TellStopped(error);
  ShowScriptError(procedure, error);
  runner_.Stop();
  parts_.controls.chkEnableScript.SetChecked(false);
}

void ScriptHost::tmrTask_Timer() {
  if (!Sees() || !RunReported(u"Task")) return;  // not within the wait of another tick
  if (!Hooks.linkOpen()) return;                 // the text waits for the link
  std::string text = timerTask_->StringSend();
  if (!text.empty()) Hooks.sendTask(std::move(text));
}

void ScriptHost::EditScript() {
  if (ScriptExists()) {
    Hooks.edit(ScriptPath());
  } else {
    parts_.status.Say(
        "no script is chosen that could be edited; \"script\" offers those of the program folder");
  }
  Hooks.focusDisplay();
}

void ScriptHost::Finish(std::int32_t status) {
  if (status < 0 || status > 255) throw vbs::ScriptError(vbs::invalidCall);
  if (!finishStatus_) finishStatus_ = status;
  Hooks.finish();
  runner_.Leave();
}

void ScriptHost::EndTask() {
  if (!parts_.controls.chkEnableScript.Checked()) return;
  parts_.controls.tmrTask.SetEnabled(false);
  try {
    if (runner_.Has(u"EndTask")) runner_.Run(u"EndTask");
  } catch (const vbs::ScriptError& error) {
    if (!CutByEnd(u"EndTask", error)) ShowScriptError(u"EndTask", error);
  }
  runner_.Stop();
}

}  // namespace quarlin
