// SPDX-License-Identifier: GPL-3.0-or-later
// A window without a window: its controls, its caption, whether it is shown and stays in front. A view shows
// it, or nobody does, as in a program without a display; what works on it does not know.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "base/hook.h"
#include "controls/collection.h"

namespace quarlin {

enum class WindowState { Normal, Minimized, Maximized };

class Form {
 public:
  // Hidden at first. The name is the one that scripts, position.ini and the views' table know it by.
  Form(std::string_view name, std::string_view caption) : name_(name), caption_(caption) {}
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Name() const { return name_; }
  ControlCollection& Collection() { return collection_; }

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);

  // Setting it again to true brings the window to the front.
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);

  // Whether it stays above all other windows.
  bool TopMost() const { return topMost_; }
  void SetTopMost(bool topMost);

  // Setting it again changes it again: the user may have done otherwise meanwhile, which the view notes.
  WindowState State() const { return state_; }
  void SetState(WindowState state);
  void NoteState(WindowState state) { state_ = state; }
  bool TakeStateWish() { return std::exchange(stateWish_, false); }

  // Whether the other windows take no input while it is shown. Takes effect when it is shown next.
  bool Modal() const { return modal_; }
  void SetModal(bool modal) { modal_ = modal; }

  // Shows it above the others, which take no input meanwhile, and returns when it has been hidden again.
  // Yields. Requires a view.
  void ShowModal();
  bool HasView() const { return static_cast<bool>(OnModal); }

  // The user closes the window. Hides it, unless the form has filled in OnClose and does that instead.
  void Close();
  Hook<void()> OnClose;

  // The view's: caption, visibility or place among the windows have been set; the form is to be shown and
  // waited for.
  Hook<void()> OnChanged;
  Hook<void()> OnModal;

 private:
  std::string name_;
  std::string caption_;
  ControlCollection collection_;
  bool visible_ = false;
  bool topMost_ = false;
  bool modal_ = false;
  WindowState state_ = WindowState::Normal;
  bool stateWish_ = false;  // the view has still to follow
};

}  // namespace quarlin
