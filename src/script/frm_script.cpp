// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/frm_script.h"

#include <algorithm>

#include "script/script_file.h"

namespace quarlin {

FrmScript::FrmScript(EventLoop& loop, std::filesystem::path folder, ScriptChoice& choice, Prompts& prompts)
    : Form("FrmScript", "Script List"),
      controls(loop),
      folder_(std::move(folder)),
      choice_(choice),
      prompts_(prompts) {
  Collection().Add(controls);
  controls.cmdSelect.OnClick = [this] { cmdSelect_Click(); };
  controls.lstScript.DblClick = [this] { cmdSelect_Click(); };
  controls.cmdExit.OnClick = [this] { Close(); };
}

void FrmScript::Load() {
  controls.lstScript.Clear();
  for (const std::string_view extension : {".vbs", ".js"}) {
    for (const std::string& name : ListScripts(folder_, extension)) controls.lstScript.AddItem(name);
  }
  const auto& entries = controls.lstScript.List();
  const auto chosen = std::find_if(entries.begin(), entries.end(), [this](const ListEntry& entry) {
    return entry.text == choice_.ScriptFile;
  });
  if (chosen != entries.end()) controls.lstScript.SetListIndex(static_cast<int>(chosen - entries.begin()));
}

void FrmScript::cmdSelect_Click() {
  choice_.ScriptTopMost = false;
  choice_.ScriptShowCommand = false;
  if (controls.lstScript.ListCount() > 0) {
    const std::string file(controls.lstScript.Text());
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(folder_ / file, ignored)) {
      OnChosen("");
      prompts_.MsgBox(u"Error or wrong script !!", stopIcon, u"Quarlin");
    } else {
      choice_.ScriptTopMost = controls.chkTopMost.Checked();
      choice_.ScriptShowCommand = controls.chkCommand.Checked();
      OnChosen(file);
    }
  }
  Close();
}

}  // namespace quarlin
