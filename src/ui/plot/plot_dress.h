// SPDX-License-Identifier: GPL-3.0-or-later
// How the axes of all plots look: the window's font, thin lines, a faint grid.
#pragma once

#include <qcustomplot.h>

#include "ui/plot/plot_colors.h"

namespace quarlin {

void DressAxis(QCPAxis& axis, const PlotColors& colors, const QFont& font);

}  // namespace quarlin
