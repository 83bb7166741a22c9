// SPDX-License-Identifier: GPL-3.0-or-later
// The command panel on the screen. It is built by code, since most of it are rows of the same widget.
#pragma once

#include "ui/qt/form_window.h"

class QGridLayout;
class QGroupBox;

namespace quarlin {

class CommandWindow : public FormWindow {
  Q_OBJECT

 public:
  explicit CommandWindow(Form& panel);

 protected:
  // Of the contents: a long caption that a script sets makes the window grow, as far as the screen goes.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeRoom();
  QWidget* MakeNumbers();
  QWidget* MakeChoices();
  QLayout* MakeTexts();
  QWidget* MakeLamps();
  QWidget* MakeSwitches();
  QLayout* MakeExit();

  QWidget* contents_;
  QSize room_;  // that the contents wanted last
};

}  // namespace quarlin
