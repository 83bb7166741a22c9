// SPDX-License-Identifier: GPL-3.0-or-later
// A curve of the plotting library that can also be drawn fast and rough.
#pragma once

#include <qcustomplot.h>

namespace quarlin {

class CurveGraph : public QCPGraph {
 public:
  CurveGraph(QCPAxis* time, QCPAxis* values) : QCPGraph(time, values) { setAdaptiveSampling(false); }

  // Each piece of the line fills the columns it passes: for one that goes up and down in nearly every column
  // of pixels. Looks the same, and costs a fraction of a line with smooth edges.
  void SetRough(bool on) { rough_ = on; }

 protected:
  void drawLinePlot(QCPPainter* painter, const QVector<QPointF>& lines) const override;

 private:
  bool rough_ = false;
};

}  // namespace quarlin
