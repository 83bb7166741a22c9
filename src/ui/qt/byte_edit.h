// SPDX-License-Identifier: GPL-3.0-or-later
// The editor of one of the calculator's views. Its lines are there for the eye: a line end is no byte.
#pragma once

#include <QPlainTextEdit>

#include "calculator/byte_views.h"

namespace quarlin {

class ByteEdit : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit ByteEdit(QWidget* parent = nullptr);

  // As text: Enter and what is pasted go in as codes, and copies are on one line. Otherwise as numbers.
  void SetForText() { forText_ = true; }

  // Puts another text there, as if nobody had typed it.
  void Write(const QString& text);

  // Tints these characters, and underlines those that cannot be read. Where the user does not type here, the
  // marked ones come into view.
  void Show(Stretch marked, Stretch unreadable);

  Stretch Selected() const;

 signals:
  void typed();
  void selected();  // or the cursor was moved
  void refused(const QString& why);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  QTextCursor CursorAt(Stretch place) const;

  bool forText_ = false;
  bool writing_ = false;  // what changes now is none of the user's doing
};

}  // namespace quarlin
