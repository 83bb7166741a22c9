// SPDX-License-Identifier: GPL-3.0-or-later
// What ties one control to its widget: one kind of binding for each kind of control.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

#include "controls/control.h"

namespace quarlin {

// What a binding does for the user.
struct UserSide {
  // Runs what a click has set off. Edits that have not taken effect yet do so before.
  std::function<void(const std::function<void()>& action)> run;

  // Told just before the user's value goes to the control.
  std::function<void(const Control& control, const QWidget& widget)> aboutToEdit;
};

// Writes to the control only what the user has just done, never what the widget made of a value: a line
// edit, for one, cannot hold a line end.
//
// The place and the looks that a script gave the control are honoured in a window with the property
// "placeable".
class Binding {
 public:
  Binding(Control& control, QWidget& widget);
  virtual ~Binding() = default;
  Binding(const Binding&) = delete;
  Binding& operator=(const Binding&) = delete;

  // Brings the widget up to date with the control, but leaves alone what the user is just typing.
  void Show();

  // Takes a typed text over that has not taken effect yet.
  virtual void Commit() {}

 protected:
  virtual void ShowValue() = 0;
  virtual void ShowBorder(const Looks&) {}

  // The slots' context: none of them runs once the binding has gone.
  QObject& Context() { return context_; }

  // The control's, or the form's while the control has none.
  QString ToolTip() const;

 private:
  void ShowToolTip();
  void ShowColors();
  void ShowPlace();
  void ShowLook();

  Control& control_;
  QWidget& widget_;
  QString formToolTip_;
  bool colored_ = false;
  Looks shownLook_;
  QObject context_;
};

// Nothing when the widget is of another kind than the control. Both outlive the binding.
std::unique_ptr<Binding> MakeBinding(Control& control, QWidget& widget, const UserSide& user);

}  // namespace quarlin
