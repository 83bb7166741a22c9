// SPDX-License-Identifier: GPL-3.0-or-later
// A window beside the main one, which shows a form: its controls bound by name, its caption, whether it is
// shown and stays in front. Without a class of its own a window is a .ui file and a row in windows.cpp.
#pragma once

#include <QDialog>
#include <memory>

#include "controls/form.h"
#include "ui/qt/binder.h"

namespace quarlin {

class FormWindow : public QDialog {
  Q_OBJECT

 public:
  // Named like the form; hidden at first. The form outlives it. Fill it with widgets and then call Bind().
  explicit FormWindow(Form& form);
  ~FormWindow() override;
  void Bind();

  // Takes over from the form how it is shown: in front of `owner` where that takes no input meanwhile.
  void ShowState(QWidget& owner);

  // Shows it in front of `owner`, which takes no input meanwhile, until the form is hidden. Yields.
  void ShowModal(QWidget& owner);

 protected:
  // The close button, and Escape where the window is waited for: the form decides what that means.
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void reject() override;

 private:
  void PlaceFirst();
  void ShowOrHide(QWidget& owner);
  void CloseForm();

  Form& form_;
  std::unique_ptr<Binder> binder_;
};

}  // namespace quarlin
