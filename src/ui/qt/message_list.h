// SPDX-License-Identifier: GPL-3.0-or-later
// All messages of the status bar with their times, in a small list above it that closes as soon as something
// else is clicked.
#pragma once

#include <QFrame>
#include <QTreeWidget>

#include "controls/status_note.h"
#include "ui/qt/frame_pacer.h"

namespace quarlin {

class MessageList : public QFrame {
  Q_OBJECT

 public:
  // Both outlive the list. A click on the row, or on what is in it, opens it.
  MessageList(StatusNote& status, QWidget& row);
  ~MessageList() override;

  void Open();

  // The selected messages, or all where none is, a line each.
  void Copy() const;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void Fill();
  void Place();

  StatusNote& status_;
  QWidget& row_;
  QTreeWidget* list_;
  FramePacer pacer_;
};

}  // namespace quarlin
