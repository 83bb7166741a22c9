// SPDX-License-Identifier: GPL-3.0-or-later
// What a plot is drawn with. The curves' colours are Okabe and Ito's, which those who see few colours can
// tell apart, each made darker or lighter until it stands out from the background.
#pragma once

#include <QColor>
#include <QPalette>
#include <QPen>
#include <vector>

namespace quarlin {

class PlotColors {
 public:
  explicit PlotColors(const QPalette& palette);
  static PlotColors ForPaper();  // on white, whatever the desktop's

  QColor background;
  QColor text;
  QColor axis;  // the lines of the axes, and their ticks
  QColor grid;  // faint
  QColor cursor;
  QColor timeOut;  // of the marks
  QColor wrongAnswer;
  QColor selection;  // of a box that is drawn to zoom to it

  // For the curve of a place from 0; beyond the eight colours they begin again.
  QColor Curve(int place) const;
  QColor PaleCurve(int place) const;

 private:
  std::vector<QColor> curves_;
};

// Told apart without colours too: the first is drawn through, the next are dashed in different ways.
QPen CurvePen(const QColor& color, int place, double width);

}  // namespace quarlin
