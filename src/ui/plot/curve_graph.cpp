#include "ui/plot/curve_graph.h"

#include <cmath>

namespace quarlin {

namespace {

// The rectangle around a piece of a line, which has at least the size of a pixel.
QRectF Around(QPointF from, QPointF to) {
  const QRectF way = QRectF(from, to).normalized();
  return way.adjusted(-0.5, -0.5, 0.5, 0.5);
}

}  // namespace

void CurveGraph::drawLinePlot(QCPPainter* painter, const QVector<QPointF>& lines) const {
  if (!rough_) return QCPGraph::drawLinePlot(painter, lines);
  painter->setAntialiasing(false);
  const QColor color = pen().color();
  for (qsizetype i = 1; i < lines.size(); ++i) {
    if (std::isnan(lines[i - 1].y()) || std::isnan(lines[i].y())) continue;
    painter->fillRect(Around(lines[i - 1], lines[i]), color);
  }
}

}  // namespace quarlin
