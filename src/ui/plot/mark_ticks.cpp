// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/mark_ticks.h"

#include "ui/plot/plot_legend.h"

namespace quarlin {

// Where they are many, a tick in each second column stands for all, and a head for those below it.
void MarkTicks::draw(QCPPainter* painter) {
  constexpr int tickWidth = 2;
  constexpr int headWidth = 9;
  const QRect area = parentPlot()->axisRect()->rect();
  const double bottom = area.bottom() + 1;
  const double top = bottom - height + 5;
  for (const MarkKind kind : markKinds) {
    const bool filled = kind == MarkKind::WrongAnswer;
    const QColor& color = filled ? colors_.wrongAnswer : colors_.timeOut;
    QList<QLineF> ticks;
    for (const double x : Places(kind, area.width() / tickWidth)) ticks.emplace_back(x, bottom, x, top + 3);
    painter->setAntialiasing(ticks.size() < area.width() / headWidth);
    painter->setPen(QPen(color, 1.5));
    painter->drawLines(ticks);
    painter->setAntialiasing(true);
    for (const double x : Places(kind, area.width() / headWidth))
      DrawMarkHead(*painter, {x, top}, color, filled);
  }
}

std::vector<double> MarkTicks::Places(MarkKind kind, int columns) const {
  const QCPAxis& axis = *parentPlot()->xAxis;
  std::vector<double> places;
  for (const Mark& mark : marks_.Drawn(kind, {axis.range().lower, axis.range().upper}, columns))
    places.push_back(axis.coordToPixel(mark.time));
  return places;
}

}  // namespace quarlin
