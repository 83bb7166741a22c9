// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/lamp.h"

#include <QPainter>
#include <QPalette>
#include <QRadialGradient>
#include <algorithm>

namespace quarlin {

Lamp::Lamp(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  SetColor(Qt::black);
}

void Lamp::SetColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  setAccessibleDescription(Lit() ? tr("lit") : tr("dark"));
  update();
}

bool Lamp::Lit() const {
  constexpr int half = 128;
  return color_.value() > half && fill_ != Qt::NoBrush;
}

void Lamp::SetFill(Qt::BrushStyle fill) {
  fill_ = fill;
  setAccessibleDescription(Lit() ? tr("lit") : tr("dark"));
  update();
}

void Lamp::SetBorder(const QColor& color, Qt::PenStyle line) {
  borderColor_ = color;
  border_ = line;
  update();
}

void Lamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double radius = std::min(width(), height()) / 2.0 - 1.0;
  const QPointF centre(width() / 2.0, height() / 2.0);

  // The text's colour, half transparent, stands out from a light window and from a dark one.
  QColor outline = palette().color(QPalette::WindowText);
  outline.setAlphaF(0.55F);
  const QPen border(borderColor_.isValid() ? borderColor_ : outline, 1.0, border_);
  painter.setPen(border);
  if (Lit()) {
    painter.setBrush(Filling(centre, radius));
    painter.drawEllipse(centre, radius, radius);
    return;
  }
  constexpr double ring = 1.5;  // pixels
  painter.drawEllipse(centre, radius, radius);
  painter.setPen(QPen(color_, ring));
  painter.drawEllipse(centre, radius - ring, radius - ring);
}

// Full in the middle and a little deeper towards the edge.
QBrush Lamp::Filling(const QPointF& centre, double radius) const {
  if (fill_ != Qt::SolidPattern) return QBrush(color_, fill_);
  QRadialGradient glow(centre, radius);
  glow.setColorAt(0.0, color_);
  glow.setColorAt(0.65, color_);
  glow.setColorAt(1.0, color_.darker(140));
  return glow;
}

}  // namespace quarlin
