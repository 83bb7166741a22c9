#include "ui/plot/mark_ticks.h"

#include "ui/plot/plot_legend.h"

namespace quarlin {

void MarkTicks::draw(QCPPainter* painter) {
  constexpr int pixelsPerMark = 2;  // more marks than that look the same
  const QCPAxis& axis = *parentPlot()->xAxis;
  const QRect area = parentPlot()->axisRect()->rect();
  const double bottom = area.bottom() + 1;
  for (const MarkKind kind : markKinds) {
    const bool filled = kind == MarkKind::WrongAnswer;
    const QColor& color = filled ? colors_.wrongAnswer : colors_.timeOut;
    for (const Mark& mark :
         marks_.Drawn(kind, {axis.range().lower, axis.range().upper}, area.width() / pixelsPerMark)) {
      const QPointF foot(axis.coordToPixel(mark.time), bottom);
      const QPointF head = foot - QPointF(0, height - 5);
      painter->setPen(QPen(color, 1.5));
      painter->drawLine(foot, head + QPointF(0, filled ? 0 : 3));
      DrawMarkHead(*painter, head, color, filled);
    }
  }
}

}  // namespace quarlin
