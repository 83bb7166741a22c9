// SPDX-License-Identifier: GPL-3.0-or-later
// The tree of a debugger's values: variables and watches, opened piece by piece, what has changed since the
// last stand in bold.
#pragma once

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QTreeWidget>

#include "script/script_debugger.h"

namespace quarlin {

class DebugValues : public QTreeWidget {
  Q_OBJECT

 public:
  explicit DebugValues(ScriptDebugger& debugger, QWidget* parent = nullptr);

  // The script stands: shows what that call sees.
  void ShowCall(std::size_t call);

  // It goes on: no value is held any more, and the words stay, grey, until the next stand.
  void LetGo();

  // Shows the value of an expression at every stand.
  void AddWatch(const QString& expression);
  void RemoveSelectedWatch();

 private:
  class Item;

  QTreeWidgetItem* Group(const QString& title, const std::vector<ShownValue>& rows);
  void FillWatches();
  Item* Add(QTreeWidgetItem* parent, const ShownValue& shown);
  void AddParts(QTreeWidgetItem* parent, const vbs::Value& value, std::size_t first);
  void Open(QTreeWidgetItem* item);
  void ShowMore();

  ScriptDebugger& debugger_;
  std::size_t call_ = 0;
  QString procedure_;
  QStringList watches_;
  QSet<QString> opened_;            // paths
  QHash<QString, QString> before_;  // path to text, at the last stand
  QHash<QString, QString> now_;
};

}  // namespace quarlin
