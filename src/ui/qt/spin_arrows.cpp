// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/spin_arrows.h"

#include <QMouseEvent>
#include <QStyleOptionSpinBox>
#include <QStylePainter>

namespace quarlin {

SpinArrows::SpinArrows(QWidget* parent) : QAbstractSlider(parent) {
  setOrientation(Qt::Vertical);
  setRange(0, 2);
  setSingleStep(1);
  setPageStep(1);
  setValue(1);
  setInvertedControls(true);  // the up key and the wheel upwards press the upper arrow
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SpinArrows::sizeHint() const {
  return {fontMetrics().height() + 4, fontMetrics().height() + 10};
}

void SpinArrows::Press(SliderAction action) {
  pressed_ = action;
  setRepeatAction(action);  // again and again while it is held
  update();
}

void SpinArrows::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  const SliderAction action =
      event->position().y() < height() / 2.0 ? SliderSingleStepSub : SliderSingleStepAdd;
  Press(action);
  triggerAction(action);
}

void SpinArrows::mouseReleaseEvent(QMouseEvent*) {
  Press(SliderNoAction);
}

void SpinArrows::changeEvent(QEvent* event) {
  if (event->type() == QEvent::EnabledChange && !isEnabled()) Press(SliderNoAction);
  QAbstractSlider::changeEvent(event);
}

void SpinArrows::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  for (const SliderAction action : {SliderSingleStepSub, SliderSingleStepAdd}) {
    const bool upper = action == SliderSingleStepSub;
    QStyleOptionButton button;
    button.initFrom(this);
    button.rect = QRect(0, upper ? 0 : height() / 2, width(), height() - height() / 2);
    button.state |= pressed_ == action ? QStyle::State_Sunken : QStyle::State_Raised;
    button.state &= ~QStyle::State_HasFocus;
    painter.drawPrimitive(QStyle::PE_PanelButtonCommand, button);
    QStyleOption arrow(button);
    const int side = std::min(button.rect.height() - 4, width() - 8);
    arrow.rect = QRect(0, 0, side, side);
    arrow.rect.moveCenter(button.rect.center());
    painter.drawPrimitive(upper ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, arrow);
  }
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  focus.rect = rect().adjusted(1, 1, -1, -1);
  painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace quarlin
