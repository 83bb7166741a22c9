// SPDX-License-Identifier: GPL-3.0-or-later
// A label whose text may be longer than its place: it is cut with an ellipsis, and the tool tip shows it
// whole. The form gives it the horizontal policy Ignored, so that a long text does not widen the window.
#pragma once

#include <QLabel>

namespace quarlin {

class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool IsCut() const;
};

}  // namespace quarlin
