// SPDX-License-Identifier: GPL-3.0-or-later
// The script that is edited as the one that runs.
#include <fmt/format.h>

#include "base/text.h"
#include "macro/expander.h"
#include "script/edit/frm_editor.h"
#include "script/script_file.h"
#include "script/values/conversions.h"

namespace quarlin {

bool FrmEditor::Runs() const {
  return IsChosen() && parts_.script.Runner().Loaded();
}

void FrmEditor::CompareWithRunning() {
  older_ = Runs() && ScriptTextOf(onDisk_).text != Debugger().StartedText();
}

void FrmEditor::StandChanged() {
  CompareWithRunning();  // it may stand before anybody was told that it was started
  ShowCaption();
  Hooks.runChanged();
}

bool FrmEditor::SaveFirst() {
  if (file_.empty()) {
    Tell("the script has no name yet: save it first");
    return false;
  }
  if (!modified_) return true;
  savesUnasked_ = savesUnasked_ || parts_.prompts.Confirm(
                                       "A script is saved before it runs. Save it now, and from now on "
                                       "without a question?",
                                       boxTitle);
  return savesUnasked_ && Save();
}

bool FrmEditor::Start() {
  if (!Runs() || RunsOlder()) return Restart();
  Tell("it runs already; Restart begins anew");
  return true;
}

bool FrmEditor::Restart() {
  if (asking_ || !SaveFirst()) return false;
  if (file_.parent_path() != parts_.folder.Path()) {
    Tell("only scripts of the program folder run: save it there");
    return false;
  }
  if (!CheckText()) {
    Tell("it does not run with this error in it");
    Hooks.placeWanted(fault_->place);
    return false;
  }
  older_ = false;
  starting_ = true;
  parts_.script.RunFile(file_.filename().string());
  starting_ = false;
  startsLater_ = !Runs() && parts_.script.Runner().Running();
  if (startsLater_)
    Tell(fmt::format("{} starts as soon as what runs has returned", BytesFromUtf8(FileName())));
  if (Runs()) TellStarted();
  return Runs();
}

void FrmEditor::TellStarted() {
  startsLater_ = false;
  Tell(fmt::format("{} started", BytesFromUtf8(FileName())));
}

void FrmEditor::Stop() {
  const bool ran = Runs();
  parts_.script.StopScript();
  Tell(ran ? "stopped" : "no script runs");
}

// One that keeps it from running is shown at once; one in a hook moves nobody's cursor.
bool FrmEditor::ErrorMet(std::u16string_view procedure, const vbs::ScriptError& error) {
  if (!Visible() || !IsChosen()) return false;
  parts_.output.Add({ErrorLine(procedure, error), error.position.line, error.position.column, true});
  if (starting_) Hooks.placeWanted(error.position);
  Tell("the script has an error");
  return true;
}

void FrmEditor::Try(ScriptHook hook, std::string_view text) {
  if (Runs()) {
    Tell("");  // what is told of an earlier one
  } else if (!Start()) {
    return;
  }
  const std::string name = vbs::Utf8Of(NameOf(hook));
  if (!parts_.script.Has(hook)) {
    parts_.output.Add({fmt::format("there is no {}: the text would pass as it is", name)});
    return;
  }
  if (parts_.script.Runner().Running()) return Tell("the script is at work: try again when it has returned");
  if (RunsOlder()) parts_.output.Add({"what runs is older than the text here: Restart takes it over"});
  const std::string given = ExpandHexCodes(text);
  std::string result;
  const std::size_t piece = hook == ScriptHook::ReceiveChar ? 1 : std::max<std::size_t>(given.size(), 1);
  try {
    for (std::size_t at = 0; at < std::max<std::size_t>(given.size(), 1); at += piece) {
      std::string part = given.substr(at, piece);
      parts_.script.OfferStrictly(hook, part);
      result += part;
    }
  } catch (const vbs::ScriptError& error) {
    ErrorMet(NameOf(hook), error);
    return;
  }
  parts_.output.Add({fmt::format("{}: \"{}\" becomes \"{}\"", name, CodedText(given, ScriptOutput::mostBytes),
                                 CodedText(result, ScriptOutput::mostBytes))});
}

}  // namespace quarlin
