// SPDX-License-Identifier: GPL-3.0-or-later
// What a debugger shows beside the text: whether the script stands and why, values, watches, and the calls.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QWidget>

#include "ui/editor/debug_values.h"

namespace quarlin {

class DebugPanel : public QWidget {
  Q_OBJECT

 public:
  explicit DebugPanel(ScriptDebugger& debugger, QWidget* parent = nullptr);

  // The script has begun to stand, or goes on.
  void Refresh();

  // It was started, is to pause, or has ended.
  void ShowState();

  // `mayFollow`: the text that is shown is in a language that can be followed.
  void SetMayFollow(bool mayFollow);

 signals:
  void lineWanted(int line);  // a call was chosen: a line of the script that stands

 private:
  void FillCalls();
  void ShowCall(int row);

  ScriptDebugger& debugger_;
  bool mayFollow_ = true;
  QLabel* state_;
  QComboBox* errors_;
  DebugValues* values_;
  QLineEdit* watch_;
  QListWidget* calls_;
};

}  // namespace quarlin
