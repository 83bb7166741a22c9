// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the marks of a run at the lower border of the plot.
#pragma once

#include <qcustomplot.h>

#include <vector>

#include "ui/plot/mark_list.h"
#include "ui/plot/plot_colors.h"

namespace quarlin {

class MarkTicks : public QCPLayerable {
 public:
  static constexpr int height = 16;  // pixels from the border in which a click means a mark

  MarkTicks(QCustomPlot* plot, const MarkList& marks) : QCPLayerable(plot, "axes"), marks_(marks) {}

  void SetColors(const PlotColors& colors) { colors_ = colors; }

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(true); }
  QRect clipRect() const override { return parentPlot()->axisRect()->rect(); }

 private:
  std::vector<double> Places(MarkKind kind, int columns) const;  // in pixels

  const MarkList& marks_;
  PlotColors colors_ = PlotColors::ForPaper();
};

}  // namespace quarlin
