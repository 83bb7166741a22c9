// SPDX-License-Identifier: GPL-3.0-or-later
// The font of the received-text display: ComboFont offers the installed ones, those of one width first;
// zooming changes the size, which lblfontsize shows in points.
#pragma once

#include <QAction>
#include <QFont>
#include <QList>
#include <QObject>
#include <map>
#include <string>

#include "controls/status_note.h"
#include "display/display_controls.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {

class DisplayFont : public QObject {
  Q_OBJECT

 public:
  static constexpr int smallest = 6;  // points
  static constexpr int largest = 48;

  // Fills the list and shows the desktop's font of one width. All of them outlive this object.
  DisplayFont(DisplayControls& controls, StatusNote& status, ReceivedTextView& view);
  ~DisplayFont() override;

  // Larger, smaller, ordinary size: for a menu.
  QList<QAction*> Actions() { return {&larger_, &smaller_, &ordinary_}; }
  QAction& Larger() { return larger_; }
  QAction& Smaller() { return smaller_; }

  // In points; one out of range is held at its end.
  int Size() const { return size_; }
  void SetSize(int points);

 protected:
  // Ctrl and the wheel over the display.
  bool eventFilter(QObject* viewport, QEvent* event) override;

 private:
  void OfferFonts();
  void WireActions();
  void Choose();
  void Show();

  DisplayControls& controls_;
  StatusNote& status_;
  ReceivedTextView& view_;
  const QFont ordinaryFont_;
  std::map<std::string, QString> families_;  // by the text that the control shows for them
  QString family_;
  int size_;
  int wheel_ = 0;  // of a turn that is no whole step yet
  QAction larger_;
  QAction smaller_;
  QAction ordinary_;
};

}  // namespace quarlin
