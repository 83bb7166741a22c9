// SPDX-License-Identifier: GPL-3.0-or-later
// A plot as a picture, on white paper.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <optional>

#include "ui/plot/plot_surface.h"

namespace quarlin {

// As .png, .svg or .pdf, by the ending, `size` in pixels of the usual density; a .png has twice as many. A
// sentence where it failed. `plot` looks afterwards as before.
std::optional<QString> SavePicture(PlotSurface& plot, const PlotView& view, QSize size, const QString& path);

// At twice the density.
QImage PictureOf(PlotSurface& plot, const PlotView& view, QSize size);

}  // namespace quarlin
