// SPDX-License-Identifier: GPL-3.0-or-later
// The whole program but its window, connected, with scripts in VBScript.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "script/script_host.h"
#include "script/vbscript_engine.h"
#include "support/frm_main_rig.h"

namespace quarlin {

inline std::unique_ptr<ScriptEngine> VbscriptOnly(std::string_view language, vbs::Services& services) {
  return language == "VBScript" ? std::make_unique<VbscriptEngine>(services) : nullptr;
}

class ScriptRig : public FrmMainRig {
 protected:
  ScriptRig() {
    engines = VbscriptOnly;
    frm.Script().List().OnModal = [this] {
      ++listsShown;
      if (whileListed) whileListed(frm.Script().List());
    };
    Choose(0);
    Start();
    Connect();
    Pass(std::chrono::milliseconds(20));
    scale.ForgetWritten();
  }

  void Choose(int entry) {
    whileListed = [entry](FrmScript& list) {
      list.controls.lstScript.SetListIndex(entry);
      list.controls.cmdSelect.Click();
    };
  }
  void Write(std::string_view name, std::string_view script) {
    ASSERT_FALSE(WriteWholeFile(folder / name, script));
  }
  CheckBox& Box() { return controls().script.chkEnableScript; }
  bool On() { return Box().Checked(); }
  void Enable(std::string_view script) {
    Box().SetChecked(false);
    Write("test.vbs", script);
    Box().SetChecked(true);
  }
  void Receive(std::string_view bytes) {
    scale.Receive(bytes);
    Pass(std::chrono::milliseconds(20));
  }
  void Send(std::string_view command) {
    controls().cycle.CBOSEND.SetText(command);
    controls().cycle.cmdSend.Click();
    Pass(std::chrono::milliseconds(20));
  }
  std::string Last() { return controls().receive.txtparser.Text(); }
  std::string ScriptErrors() { return controls().script.lblScriptErrors.Caption(); }

  int listsShown = 0;
  std::function<void(FrmScript& list)> whileListed;
};

}  // namespace quarlin
