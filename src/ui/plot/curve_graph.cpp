// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/curve_graph.h"

#include <cmath>

namespace quarlin {

namespace {

// Wider pieces, in pixels, are slanting lines; narrower ones differ from an upright bar by less than a pixel.
constexpr double upright = 1.5;

// The rectangle around a piece of a line, which has at least the size of a pixel.
QRectF Around(QPointF from, QPointF to) {
  const QRectF way = QRectF(from, to).normalized();
  return way.adjusted(-0.5, -0.5, 0.5, 0.5);
}

}  // namespace

void CurveGraph::drawLinePlot(QCPPainter* painter, const QVector<QPointF>& lines) const {
  if (!rough_) return QCPGraph::drawLinePlot(painter, lines);
  painter->setAntialiasing(false);
  painter->setPen(pen());
  const QColor color = pen().color();
  for (qsizetype i = 1; i < lines.size(); ++i) {
    if (std::isnan(lines[i - 1].y()) || std::isnan(lines[i].y())) continue;
    const QPointF way = lines[i] - lines[i - 1];
    if (std::abs(way.x()) > upright && way.y() != 0) {
      painter->drawLine(QLineF(lines[i - 1], lines[i]));
    } else {
      painter->fillRect(Around(lines[i - 1], lines[i]), color);
    }
  }
}

}  // namespace quarlin
