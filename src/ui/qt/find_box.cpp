// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/find_box.h"

#include <QPainter>
#include <QToolTip>

#include "ui/qt/tint.h"

namespace quarlin {
namespace {

constexpr int clearButton = 26;  // with its distances

}  // namespace

void FindBox::SetNote(const QString& note) {
  if (note_ == note) return;
  note_ = note;
  setTextMargins(0, 0, note.isEmpty() ? 0 : fontMetrics().horizontalAdvance(note) + 6, 0);
  update();
}

void FindBox::SetError(const QString& error) {
  if (error_ == nullptr) {
    if (error.isEmpty()) return;
    error_ = new QLabel(parentWidget());
    error_->setObjectName("findError");
    error_->setPalette(QToolTip::palette());
    error_->setAutoFillBackground(true);
    error_->setFrameShape(QFrame::Box);
    error_->setMargin(4);
  }
  error_->setText(error);
  error_->adjustSize();
  error_->move(geometry().left(), geometry().bottom() + 2);
  error_->setVisible(!error.isEmpty());
  error_->raise();
}

void FindBox::SetInVain(bool vain) {
  setPalette(vain ? Tinted(*this, colors::red, std::nullopt) : QPalette());
}

void FindBox::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  if (note_.isEmpty()) return;
  QPainter painter(this);
  QColor faint = palette().color(QPalette::Text);
  faint.setAlphaF(0.6F);
  painter.setPen(faint);
  painter.drawText(rect().adjusted(0, 0, -clearButton, 0), Qt::AlignRight | Qt::AlignVCenter, note_);
}

}  // namespace quarlin
