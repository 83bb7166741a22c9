// SPDX-License-Identifier: GPL-3.0-or-later
// The box for the text to find. It tells in itself how many places there are, and below itself what is wrong
// with an expression, so that nothing moves while somebody types.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QString>

namespace quarlin {

class FindBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit FindBox(QWidget* parent = nullptr) : QLineEdit(parent) {}

  // "3/17", at the right end.
  void SetNote(const QString& note);
  const QString& Note() const { return note_; }

  // Empty: nothing is wrong. Laid over what is below, in the box's parent.
  void SetError(const QString& error);

  // Tinted where a search is in vain.
  void SetInVain(bool vain);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString note_;
  QLabel* error_ = nullptr;  // once there was one
};

}  // namespace quarlin
