// SPDX-License-Identifier: GPL-3.0-or-later
// What the user types and pastes into the display: to the line while the keyboard is on it, else into the
// command box, which then has the focus.
#pragma once

#include <QComboBox>
#include <QObject>

#include "ui/frm_main.h"
#include "ui/qt/line_frame.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {

class HandInput : public QObject {
  Q_OBJECT

 public:
  // All of them outlive this object.
  HandInput(FrmMain& frm, ReceivedTextView& view, QComboBox& command);
  ~HandInput() override;

 protected:
  // Up and Down in the command box walk through the history.
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void ShowOnLine();
  void Typed(const QByteArray& keys);
  void Walk(bool older);
  void Paste();
  void PutIntoCommand(const QString& text);

  FrmMain& frm_;
  ReceivedTextView& view_;
  QComboBox& command_;
  LineFrame* frame_;
};

}  // namespace quarlin
