// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/plot_dress.h"

namespace quarlin {

void DressAxis(QCPAxis& axis, const PlotColors& colors, const QFont& font) {
  const QPen line(colors.axis, 1);
  axis.setBasePen(line);
  axis.setTickPen(line);
  axis.setTickLength(0, 4);
  axis.setSubTicks(false);
  axis.setTickLabelColor(colors.text);
  axis.setLabelColor(colors.text);
  axis.setTickLabelFont(font);
  axis.setLabelFont(font);
  axis.setTickLabelPadding(3);
  axis.setLabelPadding(4);
  axis.grid()->setPen(QPen(colors.grid, 1));
  axis.grid()->setZeroLinePen(Qt::NoPen);
}

}  // namespace quarlin
