// SPDX-License-Identifier: GPL-3.0-or-later
// The names of the curves and of what is marked, in rows above the plot, where they hide nothing.
#pragma once

#include <qcustomplot.h>

#include <vector>

namespace quarlin {

struct LegendEntry {
  QString text;
  QPen line;  // the sample; none for a mark
  bool isMark = false;
  bool isFilledMark = false;
  bool hasPoint = false;
};

class PlotLegend : public QCPLayoutElement {
 public:
  explicit PlotLegend(QCustomPlot* plot) : QCPLayoutElement(plot) {}

  void SetEntries(std::vector<LegendEntry> entries) { entries_ = std::move(entries); }
  void SetLook(const QFont& font, const QColor& text);

  QSize minimumOuterSizeHint() const override { return {0, HeightFor(parentPlot()->viewport().width())}; }
  QSize maximumOuterSizeHint() const override;

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(true); }

 private:
  struct Place {
    QRect rect;
    QString text;  // shortened where the row is too narrow
  };
  std::vector<Place> PlacesIn(int width) const;
  int HeightFor(int width) const;
  void DrawSample(QCPPainter* painter, const LegendEntry& entry, const QRect& place) const;

  std::vector<LegendEntry> entries_;
  QFont font_;
  QColor text_;
};

// The head of a tick that marks something: a ring, or filled to a diamond.
void DrawMarkHead(QPainter& painter, QPointF middle, const QColor& color, bool filled);

}  // namespace quarlin
