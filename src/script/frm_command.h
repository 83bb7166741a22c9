// SPDX-License-Identifier: GPL-3.0-or-later
// The command panel: number boxes with spin buttons, choices, texts, lamps and switches that a script
// puts to its own use. It keeps its values from one script to the next, until it is closed with Exit.
#pragma once

#include <string>

#include "base/hook.h"
#include "controls/controls.h"
#include "controls/form.h"

namespace quarlin {

// A panel of so many controls that number themselves.
template <typename Kind, std::size_t count>
class NumberedArray : public ControlArray<Kind, count> {
 public:
  template <typename... Arguments>
  NumberedArray(ControlGroup& group, std::string_view name, const Arguments&... arguments)
      : ControlArray<Kind, count>(
            [&](int index) { return std::make_unique<Kind>(group, name, arguments..., index); }) {}
};

struct FrmCommandControls : ControlGroup {
  explicit FrmCommandControls(EventLoop& loop);

  Frame FrameText{*this, "FrameText", ""};
  NumberedArray<TextBox, 8> TextIO{*this, "TextIO", ""};
  NumberedArray<ScrollBar, 8> VScrollIO{*this, "VScrollIO", 0, 2, 1};  // 0 upper arrow, 1 at rest, 2 lower
  Frame FarmeCombo{*this, "FarmeCombo", ""};
  NumberedArray<ComboBox, 20> comboIO{*this, "comboIO", std::vector<std::string>(), ""};
  TextBox txtInput{*this, "txtInput"};
  TextBox txtOutput{*this, "txtOutput"};
  Frame FrameOutput{*this, "FrameOutput", ""};
  NumberedArray<Shape, 24> ShpOutput;
  Frame FrameInput{*this, "FrameInput", ""};
  NumberedArray<CheckBox, 24> ChkInput;
  CommandButton cmdExit{*this, "cmdExit", ""};
};

// Shown beside the main window, which goes on. The window's close button means Exit, but for a panel that a
// script has put in front of everything else and waits for: that one is closed, and the script goes on.
class FrmCommand : public Form {
 public:
  explicit FrmCommand(EventLoop& loop);

  FrmCommandControls controls;

  // Brings the spin buttons to rest; a panel that was closed with Exit begins afresh. The window stays as
  // it is: hidden at first.
  void Load();

  Hook<void()> OnExit;

 private:
  void BeginAfresh();
  void VScrollIO_Change(std::size_t index);

  EventLoop& loop_;
  bool closed_ = false;  // with Exit
  bool SpinBusy = false;
};

}  // namespace quarlin
