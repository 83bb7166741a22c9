// SPDX-License-Identifier: GPL-3.0-or-later
// Two arrows, one above the other, as beside a number box. A slider of three places: in the middle at
// rest, at the minimum while the upper arrow is pressed and at the maximum while the lower one is.
#pragma once

#include <QAbstractSlider>

namespace quarlin {

class SpinArrows : public QAbstractSlider {
  Q_OBJECT

 public:
  explicit SpinArrows(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void mouseReleaseEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Press(SliderAction action);

  SliderAction pressed_ = SliderNoAction;
};

}  // namespace quarlin
