// SPDX-License-Identifier: GPL-3.0-or-later
// Below the text of a script: what it writes and what goes wrong in it, and a row to try its procedures.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QString>
#include <QWidget>
#include <vector>

#include "script/edit/script_output.h"
#include "script/script_host.h"

namespace quarlin {

class RunPane : public QWidget {
  Q_OBJECT

 public:
  explicit RunPane(QWidget* parent = nullptr);

  // At the end, and in sight unless the user looks at earlier ones. The oldest beyond
  // ScriptOutput::mostLines leave.
  void Add(const std::vector<ScriptLine>& lines);

 signals:
  void placeWanted(int line, int column);  // a line with a place was clicked
  void tryWanted(quarlin::ScriptHook hook, const QString& text);

 protected:
  bool eventFilter(QObject* list, QEvent* event) override;  // Ctrl+C copies the selected lines
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeTryRow();
  void WireLines();
  void Copy();
  void Dress();

  QListWidget* lines_;
  QComboBox* hook_;
  QLineEdit* text_;
};

}  // namespace quarlin
