// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_overlay.h"

#include <algorithm>

namespace quarlin {

void PlotOverlay::draw(QCPPainter* painter) {
  const QCPAxisRect& area = *parentPlot()->axisRect();
  if (cursors.shown && area.width() > 0) {
    const double left = parentPlot()->xAxis->coordToPixel(std::min(cursors.times[0], cursors.times[1]));
    const double right = parentPlot()->xAxis->coordToPixel(std::max(cursors.times[0], cursors.times[1]));
    QColor between = colors_.selection;
    between.setAlphaF(0.08F);
    painter->fillRect(QRectF(QPointF(left, area.top()), QPointF(right, area.bottom())) & QRectF(area.rect()),
                      between);
    for (const std::size_t index : {0U, 1U}) DrawCursor(painter, index);
  }
  if (focused) {
    painter->setPen(QPen(colors_.selection, 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(area.rect());
  }
  if (!box) return;
  QColor inside = colors_.selection;
  inside.setAlphaF(0.18F);
  painter->setPen(QPen(colors_.selection, 1));
  painter->setBrush(inside);
  painter->drawRect(*box & area.rect());
}

// A line with its number at the top; the chosen one is thicker.
void PlotOverlay::DrawCursor(QCPPainter* painter, std::size_t index) const {
  const QRect area = parentPlot()->axisRect()->rect();
  const double x = parentPlot()->xAxis->coordToPixel(cursors.times[index]);
  if (x < area.left() || x > area.right()) return;
  const bool chosen = index == cursors.chosen;
  painter->setPen(QPen(colors_.cursor, chosen ? 2 : 1, chosen ? Qt::SolidLine : Qt::DashLine));
  painter->drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));

  painter->setFont(font_);
  const QString text = QString::number(index + 1);
  const QFontMetrics metrics(font_);
  const int width = metrics.horizontalAdvance(text) + 8;
  QRectF flag(x + (index == 0 ? -width : 0), area.top(), width, metrics.height() + 2);
  if (flag.left() < area.left()) flag.moveLeft(x);
  if (flag.right() > area.right()) flag.moveRight(x);
  painter->fillRect(flag, colors_.cursor);
  painter->setPen(colors_.background);
  painter->drawText(flag, Qt::AlignCenter, text);
}

}  // namespace quarlin
