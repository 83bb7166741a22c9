// SPDX-License-Identifier: GPL-3.0-or-later
// Shows plainly that what is typed goes out at once: a coloured frame around the display with words in its
// corner, while the display has the focus and the keyboard is on the line.
#pragma once

#include <QAbstractScrollArea>
#include <QWidget>

namespace quarlin {

class LineFrame : public QWidget {
  Q_OBJECT

 public:
  // A child of the display, over its text; the mouse goes through it.
  explicit LineFrame(QAbstractScrollArea& display);

  void SetOnLine(bool onLine);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Place();
  void ShowState();

  QAbstractScrollArea& display_;
  bool onLine_ = false;
};

}  // namespace quarlin
