// SPDX-License-Identifier: GPL-3.0-or-later
// The script editor without a window: the file that is edited, what becomes of it, and what is wrong with
// its text. The text itself stands in the view while there is one.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/hook.h"
#include "base/program_folder.h"
#include "config/recent_files.h"
#include "controls/controls.h"
#include "controls/folder_watch.h"
#include "controls/form.h"
#include "controls/prompts.h"
#include "script/edit/edited_text.h"
#include "script/edit/script_output.h"
#include "script/edit/vocabulary.h"
#include "script/script_host.h"

namespace quarlin {

struct EditorControls : ControlGroup {
  using ControlGroup::ControlGroup;
  Label lblEditorFault{*this, "lblEditorFault"};  // the first error in the text as it stands; empty: none
  Label lblEditorTold{*this, "lblEditorTold"};    // the answer to what the user did last
};

struct EditorParts {
  EventLoop& loop;
  ProgramFolder folder;
  ScriptHost& script;
  Prompts& prompts;
  ScriptOutput& output;
  const ControlCollection& mainControls;
};

// The view's part. Texts are UTF-8.
struct EditorHooks {
  Hook<std::string()> text;   // as it stands in the view
  Hook<void()> opened;        // another text: Text() has it
  Hook<void()> readAgain;     // another program changed the file; the view may let the user take it back
  Hook<void()> fileChanged;   // its name, whether it is modified, or the recent files
  Hook<void()> faultChanged;  // the text was looked at, a moment after it had changed
  Hook<void()> runChanged;    // Runs() has
  Hook<void(vbs::Position place)> placeWanted;  // it is to be shown, with the cursor in it
};

// What the compiler says of the text.
struct TextFault {
  vbs::Position place;
  std::string message;  // UTF-8
};

class FrmEditor : public Form {
 public:
  static constexpr std::size_t mostBytes = std::size_t{16} << 20;  // of a file
  static constexpr Duration checkPause = std::chrono::milliseconds(400);

  // All outlive it.
  explicit FrmEditor(EditorParts parts);
  ~FrmEditor() override;

  EditorHooks Hooks;
  EditorControls controls;
  ScriptOutput& Output() { return parts_.output; }
  Vocabulary Words;

  // Shows the window: with the chosen script where it was not open yet, else with a new text.
  void Open();

  // Opens a file, after MayLose. False when another text stays. Yields.
  bool OpenFile(const std::filesystem::path& file);

  // A text with the procedures that the program calls, after MayLose. Yields.
  void New(std::string_view language);

  // False when it was not written; the user is told why then, which yields. A text without a file is not:
  // SaveAs.
  bool Save();
  bool SaveAs(const std::filesystem::path& file);

  // Asks whether a modified text is to be saved, and saves it. False when it is to stay. Yields. A second
  // call while it asks is answered with false.
  bool MayLose();

  // The file, empty for a new text; its name for captions, in UTF-8.
  const std::filesystem::path& File() const { return file_; }
  std::string FileName() const;
  std::filesystem::path Folder() const;                    // of the file; of a new text the program folder
  std::string_view Language() const { return language_; }  // "VBScript" or "JScript"
  const EditedText& Text() const { return text_; }         // as it was read or saved last
  RecentFiles Recent;

  // The view's: the text was typed into; it differs from what was saved, or does again as it was saved.
  void TextChanged();
  void SetModified(bool modified);
  bool Modified() const { return modified_; }

  // What the compiler objected to last, if anything.
  const std::optional<TextFault>& Fault() const { return fault_; }

  // Looks at the text now instead of in a moment. False when there is something wrong with it.
  bool CheckText();

  // The text runs as the script of the program: saved first, which is asked once, checked, and in the place
  // of what runs. False when it does not run then. Start leaves one alone that runs as it stands here.
  // Yields.
  bool Start();
  bool Restart();
  void Stop();

  // The script of this file is the one that is loaded; the text has changed since it was started, whoever did
  // that.
  bool Runs() const;
  bool RunsOlder() const { return Runs() && (modified_ || older_); }

  // A script of whatever file runs, or is about to.
  bool ScriptingIsOn() const { return parts_.script.IsOn(); }

  // Gives the text to that procedure of the script, for ReceiveChar character by character, and writes what
  // comes out of it. No link takes part. The script is started where it does not run. `text` is bytes, with
  // codes such as "{0D}". Yields.
  void Try(ScriptHook hook, std::string_view text);

  void Tell(std::string_view words);

  // The debugger of the script that runs. Its window tells when the script begins to stand or goes on.
  ScriptDebugger& Debugger() { return parts_.script.Runner().Debugger(); }
  void StandChanged();

 private:
  static constexpr std::string_view boxTitle = "Script editor";

  void CompareWithRunning();
  void TellStarted();
  bool SaveFirst();
  bool ErrorMet(std::u16string_view procedure, const vbs::ScriptError& error);
  bool IsChosen() const;
  void FollowChoice();
  std::string CurrentText() const { return Hooks.text ? Hooks.text() : text_.utf8; }
  std::filesystem::path ChosenFile() const;
  bool Read(const std::filesystem::path& file);
  void Take(EditedText text, const std::filesystem::path& file);
  void WatchFile();
  void FileTouched();
  void FileChanged();
  void ShowCaption();
  void SetFault(std::optional<TextFault> fault);
  bool Write(const std::filesystem::path& file);

  EditorParts parts_;
  std::filesystem::path file_;
  std::string language_ = "VBScript";
  EditedText text_;
  std::string onDisk_;  // what the file held when it was read or written last
  bool modified_ = false;
  bool asking_ = false;
  bool discarded_ = false;     // what stands in the view was given up when it closed
  bool savesUnasked_ = false;  // she has said once that a start saves
  bool starting_ = false;
  bool startsLater_ = false;  // it was to start while another call was on the stack
  bool older_ = false;        // what runs is not what the file holds
  std::optional<TextFault> fault_;
  std::unique_ptr<FolderWatch> watch_;  // of the file's folder
  Alarm checkAlarm_;
};

}  // namespace quarlin
