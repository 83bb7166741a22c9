// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/frm_editor.h"

#include <fmt/format.h>

#include "base/files.h"
#include "base/text.h"
#include "script/edit/script_template.h"
#include "script/script_file.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

// File names are UTF-8, the texts of controls and boxes are not.
std::string NameOf(const std::filesystem::path& file) {
  return BytesFromUtf8(file.filename().string());
}

bool IsFile(const std::filesystem::path& file) {
  std::error_code ignored;
  return !file.empty() && std::filesystem::is_regular_file(file, ignored);
}

}  // namespace

FrmEditor::FrmEditor(EditorParts parts)
    : Form("FrmEditor", "Script editor"),
      controls(parts.loop),
      Words(parts.script.Runner(), {&parts.mainControls, &parts.script.Panel().Collection()}),
      parts_(parts),
      checkAlarm_(parts.loop, [this] { CheckText(); }) {
  Collection().Add(controls);
  OnClose = [this] {
    if (!MayLose()) return;
    SetVisible(false);
    if (Debugger().Stands()) Debugger().Go();  // nobody would see why the test waits
  };
  ScriptHooks& hooks = parts_.script.Hooks;
  hooks.chosen = [this] { FollowChoice(); };
  hooks.loadedChanged = [this] {
    CompareWithRunning();
    if (startsLater_ && Runs()) TellStarted();
    Hooks.runChanged();
  };
  hooks.showError = [this](std::u16string_view procedure, const vbs::ScriptError& error) {
    return ErrorMet(procedure, error);
  };
}

FrmEditor::~FrmEditor() {
  ScriptHooks& hooks = parts_.script.Hooks;
  hooks.chosen = nullptr;
  hooks.loadedChanged = nullptr;
  hooks.showError = nullptr;
}

std::string FrmEditor::FileName() const {
  if (!file_.empty()) return file_.filename().string();
  return language_ == "VBScript" ? "new.vbs" : "new.js";
}

std::filesystem::path FrmEditor::Folder() const {
  return file_.empty() ? parts_.folder.Path() : file_.parent_path();
}

std::filesystem::path FrmEditor::ChosenFile() const {
  const std::string& chosen = parts_.script.ScriptFile();
  return chosen.empty() ? std::filesystem::path() : parts_.folder.File(chosen);
}

void FrmEditor::Open() {
  if (!Visible()) {
    const std::filesystem::path chosen = ChosenFile();
    const bool keeps = !file_.empty() && !discarded_;
    if (IsFile(chosen) ? !Read(chosen) : !keeps) Take(ScriptTemplate(language_), {});
  }
  SetVisible(true);
}

bool FrmEditor::OpenFile(const std::filesystem::path& file) {
  return MayLose() && Read(file);
}

void FrmEditor::New(std::string_view language) {
  if (!MayLose()) return;
  language_ = language;
  Take(ScriptTemplate(language), {});
  Tell(fmt::format("a new script in {}: Save gives it a name", language));
}

bool FrmEditor::Read(const std::filesystem::path& file) {
  const FileContent content = ReadFileUpTo(file, mostBytes);
  if (content.error) {
    Recent.Drop(file);
    Tell(fmt::format("{} cannot be read: {}", NameOf(file), content.error.message()));
    FileChanged();
    return false;
  }
  std::optional<EditedText> text = EditedTextOf(content.bytes);
  if (!text) {
    Tell(fmt::format("{} is no text that could be saved again as it is", NameOf(file)));
    return false;
  }
  onDisk_ = content.bytes;
  language_ = LanguageOf(file.filename().string());
  Take(std::move(*text), file);
  Tell("");
  return true;
}

void FrmEditor::Take(EditedText text, const std::filesystem::path& file) {
  text_ = std::move(text);
  file_ = file;
  modified_ = false;
  discarded_ = false;
  if (!file.empty()) Recent.Use(file);
  WatchFile();
  CompareWithRunning();
  Hooks.opened();
  FileChanged();
  CheckText();
}

// Another folder, another watch. The old one may be calling, so it goes when the loop is back.
void FrmEditor::WatchFile() {
  if (watch_) {
    const std::shared_ptr<FolderWatch> gone(std::move(watch_));
    parts_.loop.Post([gone] {});
  }
  if (file_.empty()) return;
  watch_ = std::make_unique<FolderWatch>(parts_.loop, file_.parent_path());
  watch_->Follow(file_.filename().string(), [this] { parts_.loop.Post([this] { FileTouched(); }); });
}

// Another program has written the file, or taken it away. What stands in the view is lost only if the user
// says so, and even then it can be taken back.
void FrmEditor::FileTouched() {
  if (asking_ || file_.empty()) return;
  const FileContent content = ReadFileUpTo(file_, mostBytes);
  if (content.error) {
    Tell(fmt::format("{} is gone; Save writes it again", NameOf(file_)));
    return SetModified(true);
  }
  if (content.bytes == onDisk_) return;
  onDisk_ = content.bytes;
  CompareWithRunning();
  asking_ = true;
  const bool again = parts_.prompts.Confirm(
      fmt::format("Another program has changed {}.\n{}Read it again?", NameOf(file_),
                  modified_ ? "What you have changed here goes; Undo brings it back.\n" : ""),
      boxTitle);
  asking_ = false;
  std::optional<EditedText> text = again ? EditedTextOf(content.bytes) : std::nullopt;
  if (!text) return SetModified(true);
  text_ = std::move(*text);
  modified_ = false;
  Hooks.readAgain();
  FileChanged();
  CheckText();
}

void FrmEditor::FileChanged() {
  ShowCaption();
  Hooks.fileChanged();
}

void FrmEditor::ShowCaption() {
  const ScriptDebugger& debugger = Debugger();
  const std::string stands =
      debugger.Stands() ? fmt::format(" - stands at line {}, the test waits", debugger.Place().line) : "";
  SetCaption(fmt::format("{}{}{} - Script editor", BytesFromUtf8(FileName()), modified_ ? "*" : "", stands));
}

bool FrmEditor::Save() {
  return !file_.empty() && Write(file_);
}

bool FrmEditor::SaveAs(const std::filesystem::path& file) {
  if (!Write(file)) return false;
  file_ = file;
  language_ = LanguageOf(file.filename().string());
  Recent.Use(file);
  WatchFile();
  FileChanged();
  CheckText();
  return true;
}

bool FrmEditor::Write(const std::filesystem::path& file) {
  std::string utf8 = CurrentText();
  std::optional<std::string> content = FileContentOf(utf8, text_.encoding);
  const bool widened = !content;
  if (widened) content = utf8;
  if (const std::error_code error = WriteWholeFile(file, *content)) {
    const std::string why = fmt::format("{} was not saved: {}", NameOf(file), error.message());
    Tell(why);
    parts_.prompts.ShowMessage(why, boxTitle);  // the bottom line may be overlooked
    return false;
  }
  if (widened) text_.encoding = TextEncoding::Utf8;
  text_.utf8 = std::move(utf8);
  onDisk_ = std::move(*content);
  modified_ = false;
  CompareWithRunning();
  Tell(fmt::format("{} saved{}", NameOf(file),
                   widened ? ", as UTF-8: Latin-1 has not all of its characters" : ""));
  FileChanged();
  return true;
}

bool FrmEditor::MayLose() {
  if (asking_) return false;
  if (!modified_) return true;
  asking_ = true;
  const SaveAnswer answer = parts_.prompts.AskToSave(
      fmt::format("{} has changes that were not saved. Save them?", BytesFromUtf8(FileName())), boxTitle);
  asking_ = false;
  if (answer == SaveAnswer::Discard) {
    modified_ = false;
    discarded_ = true;
    return true;
  }
  return answer == SaveAnswer::Save && Save();
}

void FrmEditor::TextChanged() {
  checkAlarm_.At(parts_.loop.Now() + checkPause);
}

void FrmEditor::SetModified(bool modified) {
  if (modified_ == modified) return;
  modified_ = modified;
  FileChanged();
}

bool FrmEditor::CheckText() {
  checkAlarm_.Cancel();
  try {
    const std::string utf8 = CurrentText();
    parts_.script.Runner().CheckText(language_,
                                     ScriptTextOf(FileContentOf(utf8, text_.encoding).value_or(utf8)).text);
    SetFault(std::nullopt);
  } catch (const vbs::ScriptError& error) {
    SetFault(TextFault{error.position, vbs::Utf8Of(error.FullDescription())});
  }
  return !fault_;
}

void FrmEditor::SetFault(std::optional<TextFault> fault) {
  fault_ = std::move(fault);
  controls.lblEditorFault.SetCaption(
      fault_ ? fmt::format("line {}: {}", fault_->place.line, BytesFromUtf8(fault_->message)) : "");
  Hooks.faultChanged();
}

// Somebody has chosen another script, here or with a configuration. The question, if there is one, waits
// until that is done.
void FrmEditor::FollowChoice() {
  if (!Visible() || IsChosen() || !IsFile(ChosenFile())) return;
  parts_.loop.Post([this] {
    if (Visible() && !IsChosen() && IsFile(ChosenFile())) OpenFile(ChosenFile());
  });
}

bool FrmEditor::IsChosen() const {
  return !file_.empty() && file_ == ChosenFile();
}

void FrmEditor::Tell(std::string_view words) {
  controls.lblEditorTold.SetCaption(words);
}

}  // namespace quarlin
