// SPDX-License-Identifier: GPL-3.0-or-later
// The pages of settings at the right of the window, one at a time, and the buttons that save and load them.
// The names of the pages stand in a column at the right edge, so that there is room for many.
#pragma once

#include <QTabWidget>
#include <QWidget>

namespace quarlin {

class SideTabs : public QTabWidget {
  Q_OBJECT

 public:
  explicit SideTabs(QWidget* parent = nullptr);
};

class SidePanel : public QWidget {
  Q_OBJECT

 public:
  explicit SidePanel(QWidget* parent = nullptr);

  // Brings the page with that number (from 0) to the front, with the keyboard.
  void ShowPage(int number);
  int PageCount() const { return tabs_->count(); }
  int CurrentPage() const { return tabs_->currentIndex(); }
  // Wide enough for every page, and no wider: the traffic wants the room.
  QSize sizeHint() const override;

  QString PageTitle(int number) const { return tabs_->tabText(number); }

 private:
  SideTabs* tabs_;
};

}  // namespace quarlin
