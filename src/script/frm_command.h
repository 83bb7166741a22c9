// The command panel: number boxes with spin buttons, choices, texts, lamps and switches that a script
// puts to its own use. It keeps its values from one script to the next, until it is closed with Exit.
#pragma once

#include <string>

#include "base/hook.h"
#include "controls/collection.h"
#include "controls/controls.h"

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

class FrmCommand {
 public:
  explicit FrmCommand(EventLoop& loop);

  FrmCommandControls controls;
  ControlCollection& Collection() { return collection_; }

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

  // Brings the spin buttons to rest; a panel that was closed with Exit begins afresh. The window stays as
  // it is: hidden at first.
  void Load();

  // Shown beside the main window, which goes on.
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);

  bool TopMost() const { return topMost_; }
  void SetTopMost(bool topMost);

  // The window's close button means Exit.
  Hook<void()> OnExit;

  // The view's: caption, visibility or place among the windows have changed, or it wants to be in front.
  Hook<void()> OnWindowChanged;

 private:
  void BeginAfresh();
  void VScrollIO_Change(std::size_t index);
  void WindowChanged() const;

  EventLoop& loop_;
  ControlCollection collection_;
  std::string caption_;
  bool closed_ = false;  // with Exit
  bool visible_ = false;
  bool topMost_ = false;
  bool SpinBusy = false;
};

}  // namespace quarlin
