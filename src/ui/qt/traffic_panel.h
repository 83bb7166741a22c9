// SPDX-License-Identifier: GPL-3.0-or-later
// What goes over the line, in the middle of the window: the received-text display below a row of its tools.
#pragma once

#include <QAction>
#include <QList>
#include <QWidget>
#include <memory>

#include "ui/qt/received_text_view.h"

class QActionGroup;

namespace quarlin {

namespace Ui {
class TrafficPanel;
}

class TrafficPanel : public QWidget {
  Q_OBJECT

 public:
  explicit TrafficPanel(QWidget* parent = nullptr);
  ~TrafficPanel() override;

  // The actions of the tools, in the order of a menu; a separator where a group ends.
  QList<QAction*> FindActions();
  QList<QAction*> CopyActions();
  QList<QAction*> ViewActions();
  QAction* SaveAction();

  ReceivedTextView& View();

 signals:
  void clearRequested();
  void told(const QString& message);  // an answer to what the user did

 private:
  void WireDisplay();
  void WireTimes();
  void WireFind();
  void WireCopy();
  void SetSearch();
  void ShowSearch();
  void Find(SearchDirection direction);
  void AskForTime();
  void SaveDisplay();
  void SaveTo(const QString& file);
  QAction* Separator();

  std::unique_ptr<Ui::TrafficPanel> ui_;
  QList<QAction*> times_;                     // in the order of TimeColumn
  TimeColumn lastTimes_ = TimeColumn::Clock;  // what the Times button brings back
};

}  // namespace quarlin
