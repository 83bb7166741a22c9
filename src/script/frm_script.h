// SPDX-License-Identifier: GPL-3.0-or-later
// The script list: the user chooses the script that is to run, and how its command panel is shown.
#pragma once

#include <filesystem>
#include <string>

#include "base/hook.h"
#include "controls/controls.h"
#include "controls/form.h"
#include "controls/prompts.h"

namespace quarlin {

struct FrmScriptControls : ControlGroup {
  using ControlGroup::ControlGroup;
  ListBox lstScript{*this, "lstScript"};
  CheckBox chkTopMost{*this, "chkTopMost", "TopMost"};       // keep the command panel above other windows
  CheckBox chkCommand{*this, "chkCommand", "Show Command"};  // show it when the script starts
  CommandButton cmdSelect{*this, "cmdSelect", "Select"};
  CommandButton cmdExit{*this, "cmdExit", "Exit"};
};

// What was chosen. The list writes it, the host reads it.
struct ScriptChoice {
  std::string ScriptFile;  // without folder; empty until one was chosen
  bool ScriptTopMost = false;
  bool ScriptShowCommand = false;
};

class FrmScript : public Form {
 public:
  FrmScript(EventLoop& loop, std::filesystem::path folder, ScriptChoice& choice, Prompts& prompts);

  FrmScriptControls controls;

  // Lists the *.vbs and then the *.js files of the folder, and selects the one that was chosen last.
  void Load();

  // The host's: a file was chosen; empty where the chosen one has gone meanwhile.
  Hook<void(const std::string& file)> OnChosen;

 private:
  void cmdSelect_Click();

  std::filesystem::path folder_;
  ScriptChoice& choice_;
  Prompts& prompts_;
};

}  // namespace quarlin
