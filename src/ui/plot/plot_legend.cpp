// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_legend.h"

#include <algorithm>

namespace quarlin {

namespace {

constexpr int sampleWidth = 26;
constexpr int gap = 6;        // between a sample and its text
constexpr int distance = 18;  // between two entries
constexpr int rowSpace = 4;

}  // namespace

void PlotLegend::SetLook(const QFont& font, const QColor& text) {
  font_ = font;
  text_ = text;
}

std::vector<PlotLegend::Place> PlotLegend::PlacesIn(int width) const {
  const QFontMetrics metrics(font_);
  std::vector<Place> places;
  int x = 0;
  int y = 0;
  for (const LegendEntry& entry : entries_) {
    const QString text = metrics.elidedText(entry.text, Qt::ElideRight, width - sampleWidth - gap);
    const int needed = sampleWidth + gap + metrics.horizontalAdvance(text) + 1;
    if (x > 0 && x + needed > width) {
      x = 0;
      y += metrics.height() + rowSpace;
    }
    places.push_back({QRect(x, y, needed, metrics.height()), text});
    x += needed + distance;
  }
  return places;
}

// In a small plot only the first rows, so that the curves keep most of it.
int PlotLegend::HeightFor(int width) const {
  constexpr int share = 5;
  const int most = parentPlot()->viewport().height() / share;
  const int margins = mMargins.top() + mMargins.bottom();
  int height = 0;
  for (const Place& place : PlacesIn(width - mMargins.left() - mMargins.right()))
    if (height == 0 || place.rect.bottom() + 1 + margins <= most) height = place.rect.bottom() + 1 + margins;
  return height;
}

QSize PlotLegend::maximumOuterSizeHint() const {
  return {QWIDGETSIZE_MAX, HeightFor(parentPlot()->viewport().width())};
}

void PlotLegend::draw(QCPPainter* painter) {
  painter->setFont(font_);
  const std::vector<Place> places = PlacesIn(rect().width());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const QRect place = places[i].rect.translated(rect().topLeft());
    if (place.top() > rect().bottom()) break;
    DrawSample(painter, entries_[i], place);
    painter->setPen(text_);
    painter->drawText(place.adjusted(sampleWidth + gap, 0, 1, 0), Qt::AlignLeft | Qt::AlignVCenter,
                      places[i].text);
  }
}

void PlotLegend::DrawSample(QCPPainter* painter, const LegendEntry& entry, const QRect& place) const {
  const QPointF left(place.left(), place.center().y() + 0.5);
  const QPointF middle = left + QPointF(sampleWidth / 2.0, 0);
  if (entry.isMark) {
    DrawMarkHead(*painter, middle, entry.line.color(), entry.isFilledMark);
    return;
  }
  painter->setPen(entry.line);
  if (entry.line.style() != Qt::NoPen) painter->drawLine(left, left + QPointF(sampleWidth, 0));
  if (!entry.hasPoint) return;
  painter->setPen(Qt::NoPen);
  painter->setBrush(entry.line.color());
  painter->drawEllipse(middle, 2.5, 2.5);
}

void DrawMarkHead(QPainter& painter, QPointF middle, const QColor& color, bool filled) {
  constexpr double radius = 3.5;
  painter.setPen(QPen(color, 1.5));
  painter.setBrush(filled ? QBrush(color) : Qt::NoBrush);
  if (!filled) {
    painter.drawEllipse(middle, radius - 0.5, radius - 0.5);
    return;
  }
  const QPolygonF diamond{middle + QPointF(0, -radius), middle + QPointF(radius, 0),
                          middle + QPointF(0, radius), middle + QPointF(-radius, 0)};
  painter.drawPolygon(diamond);
}

}  // namespace quarlin
