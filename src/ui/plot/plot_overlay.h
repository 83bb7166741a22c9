// SPDX-License-Identifier: GPL-3.0-or-later
// What lies over the curves and is drawn without them: the cursors, and the box to zoom to.
#pragma once

#include <qcustomplot.h>

#include <array>
#include <optional>

#include "ui/plot/plot_colors.h"

namespace quarlin {

struct CursorPair {
  bool shown = false;
  std::array<double, 2> times{};
  std::size_t chosen = 0;  // the one that keys move
};

class PlotOverlay : public QCPLayerable {
 public:
  // On the layer "overlay", which can be drawn by itself.
  explicit PlotOverlay(QCustomPlot* plot) : QCPLayerable(plot, "overlay") {}

  void SetColors(const PlotColors& colors) { colors_ = colors; }
  void SetFont(const QFont& font) { font_ = font; }

  CursorPair cursors;
  std::optional<QRect> box;
  bool focused = false;  // by the keyboard

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override { painter->setAntialiasing(false); }

 private:
  void DrawCursor(QCPPainter* painter, std::size_t index) const;

  PlotColors colors_ = PlotColors::ForPaper();
  QFont font_;
};

}  // namespace quarlin
