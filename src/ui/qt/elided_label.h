// A label whose text may be longer than its place: it is cut with an ellipsis, and the tool tip shows it
// whole. Its text never asks for room, so a long one does not widen the window.
#pragma once

#include <QLabel>

namespace quarlin {

class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  using QLabel::QLabel;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool IsCut() const;
};

}  // namespace quarlin
