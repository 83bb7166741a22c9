// SPDX-License-Identifier: GPL-3.0-or-later
// The host of the user's script: switches it on and off, runs its periodic task, lets it see and replace
// what goes through the link, and reports what goes wrong in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "base/program_folder.h"
#include "controls/status_note.h"
#include "script/frm_command.h"
#include "script/frm_script.h"
#include "script/script_controls.h"
#include "script/script_runner.h"
#include "script/script_waits.h"
#include "script/serial_string.h"
#include "script/text_string.h"
#include "script/timer_task.h"
#include "script/wscript_object.h"

namespace quarlin {

struct ScriptParts {
  EventLoop& loop;
  ScriptControls& controls;
  ProgramFolder folder;
  TimedPrompts& prompts;
  EngineFactory engines;
  StatusNote& status;
  TextString::Append append;  // to the received-text display
  LastResort lastResort = {};
};

// What the host asks of the rest of the window.
struct ScriptHooks {
  Hook<bool()> linkOpen;
  Hook<void(std::string text)> sendTask;  // sends the task's text, logs and shows it. Yields
  Hook<void(const std::filesystem::path& file)> edit;
  Hook<void()> focusDisplay;
  Hook<void()> chosen;         // txtScriptFile names another script
  Hook<void()> loadedChanged;  // a script is about to run, runs from now on, or none does
  // Told of every error. True: the user has seen it there, so no box is needed.
  Hook<bool(std::u16string_view procedure, const vbs::ScriptError& error)> showError;
  Hook<void()> finish;  // ends the program in order, as soon as every handler on the stack has returned
  Hook<void(std::string_view line)> firstError;  // of a procedure whose errors are counted and not shown
  Hook<void(std::string_view line)> cutShort;    // the end of the program stopped a procedure
};

// What went wrong in scripts since the start of the program.
struct ScriptErrors {
  static constexpr std::size_t mostTexts = 20;

  std::uint64_t count = 0;
  std::vector<std::string> first;  // the first of each procedure, a line each
};

// What a script may replace.
enum class ScriptHook { ReceiveChar, ReceiveString, SendString };
std::u16string_view NameOf(ScriptHook hook);  // of its procedure

class ScriptHost {
 public:
  explicit ScriptHost(ScriptParts parts);

  ScriptHooks Hooks;

  // Of "WScript": the display, without arguments, unless somebody sets another one.
  ScriptConsole Console;

  FrmCommand& Panel() { return panel_; }

  // Shown when scripting is switched on. Where nobody sees it, the script that txtScriptFile names is taken.
  FrmScript& List() { return list_; }
  ScriptRunner& Runner() { return runner_; }
  ScriptWaits& Waits() { return waits_; }
  const std::string& ScriptFile() const { return choice_.ScriptFile; }

  // The "script" box is checked: a script runs, or is about to.
  bool IsOn() const { return parts_.controls.chkEnableScript.Checked(); }

  // The main window as scripts see it; to be set before any script is started.
  void SetFormMain(vbs::ObjectRef formMain);

  // Scripts that are started from now on begin with the locale that position.ini names. Returns what is wrong
  // with it, empty when nothing is.
  std::string TakeUpLocale();

  // Whether text that goes through the link is to be offered to the script. Not while the script runs:
  // what it sends itself does not enter it again.
  bool Sees() const;

  // The script's procedure of that name replaces the text. Nothing happens where there is none. Errors are
  // counted and shown in the status bar, and then the text is what the script set last. Yields.
  void Offer(ScriptHook hook, std::string& text);

  // Likewise, but throws ScriptError.
  void OfferStrictly(ScriptHook hook, std::string& text);

  // Runs that script of the program folder as if it had been chosen in the list, which is not shown. One that
  // runs ends first. Yields.
  void RunFile(const std::string& file);

  // Switches scripting off, as the box does.
  void StopScript();

  // Whether it has the procedure; false while no script is loaded.
  bool Has(ScriptHook hook) const;

  void EnableScript();
  void DisableScript();
  void tmrTask_Timer();
  void EditScript();

  const ScriptErrors& Errors() const { return errors_; }

  // Why the script that was switched on last did not come so far as to run; empty when it did.
  const std::string& StartFailure() const { return startFailure_; }

  // For scripts: the end of the program, with this exit status; the first one holds. Does not return to the
  // script. Error 5 outside of 0 to 255.
  [[noreturn]] void Finish(std::int32_t status);
  std::optional<int> FinishStatus() const { return finishStatus_; }

  // The program is to end soon, whatever a script does: from now on only EndTask runs.
  void EndProgram() { runner_.EndProgram(); }

  // The last word of a script at the end of the program. Yields.
  void EndTask();

  // Closes the script list if it is open.
  void CloseList() { list_.Close(); }

 private:
  void TakeChoice(const std::string& file);
  void ChooseScript();
  bool Start();
  bool FindScript();
  bool RunReported(std::u16string_view procedure);
  bool CutByEnd(std::u16string_view procedure, const vbs::ScriptError& error);
  void CountError(std::u16string_view procedure, const vbs::ScriptError& error);
  void ShowScriptError(std::u16string_view procedure, const vbs::ScriptError& error);
  void TellStopped(const vbs::ScriptError& error);
  void GiveUp(std::u16string_view procedure, const vbs::ScriptError& error);
  void HookFailed(ScriptHook hook, const vbs::ScriptError& error);
  void WireDebugger();
  bool ScriptExists() const;
  bool MayCall() const;
  std::filesystem::path ScriptPath() const { return parts_.folder.File(choice_.ScriptFile); }

  ScriptParts parts_;
  ScriptChoice choice_;
  ScriptErrors errors_;
  std::set<std::u16string> failedProcedures_;
  std::string startFailure_;
  std::string ranBefore_;  // what the status bar said before the script stood
  bool unlisted_ = false;  // the next start takes the chosen script without a list
  std::optional<int> finishStatus_;
  FrmScript list_;
  FrmCommand panel_;
  vbs::Ref<SerialString> charReceived_;
  vbs::Ref<SerialString> stringReceived_;
  vbs::Ref<SerialString> stringToSend_;
  vbs::Ref<TimerTask> timerTask_;
  Alarm enableAlarm_;    // switched on by a script that is still running
  ScriptRunner runner_;  // ends first: the script's last code may use all of the above
  ScriptWaits waits_;
};

// "ReceiveString, line 12: Type mismatch".
std::string ErrorLine(std::u16string_view procedure, const vbs::ScriptError& error);

// The report of an error, as the message box shows it.
std::u16string ErrorReport(std::string_view scriptFile, const vbs::ScriptError& error);

}  // namespace quarlin
