// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing itself: axes, legend, curves, marks, cursors. What is drawn is told to it; it asks nobody.
#pragma once

#include <qcustomplot.h>

#include <vector>

#include "ui/plot/axis_tickers.h"
#include "ui/plot/curve_graph.h"
#include "ui/plot/curve_set.h"
#include "ui/plot/mark_list.h"
#include "ui/plot/mark_ticks.h"
#include "ui/plot/plot_colors.h"
#include "ui/plot/plot_legend.h"
#include "ui/plot/plot_overlay.h"

namespace quarlin {

class PlotSurface : public QCustomPlot {
 public:
  // `curves` and `marks` outlive it. Mouse and keys are its parent's.
  PlotSurface(const CurveSet& curves, const MarkList& marks, QWidget* parent);

  void SetColors(const PlotColors& colors);
  void SetTitle(const QString& title);  // above all
  void SetAxisTitles(const QString& time, const QString& values, const QString& secondValues);
  void SetTimes(PlotTimes times);
  void SetStyle(bool points, bool lines);

  // Drawn as finely as it can be, whatever it costs: for a picture of this density.
  static constexpr int paperDensity = 2;
  void SetOnPaper(bool on) { onPaper_ = on; }

  // The curves are others, or look otherwise.
  void ReplaceCurves();
  void ShowView(const PlotView& view);
  // The same, and draws everything anew, before the next paint.
  void Draw(const PlotView& view);
  // The cursors and the box only.
  void DrawOverlay();

  PlotOverlay& Overlay() { return *overlay_; }
  const PlotColors& Colors() const { return colors_; }
  PlotTimes Times() const { return times_; }

  // Where the curves are, in pixels of the widget.
  QRect Area() const { return axisRect()->rect(); }
  // How far apart in time two pixels are.
  double PixelTime() const;

 private:
  struct Line {
    CurveGraph* curve;
    CurveGraph* lonePoints;  // between two gaps, where a line would show nothing
    int color;               // place of its colour
  };

  void DressLines();
  void Fill();
  void FillLine(const Line& line, const CurveLook& look);
  void FillLegend();
  void ChooseBuffers();
  QPen PenOf(const Line& line, const CurveLook& look) const;

  const CurveSet& curves_;
  const MarkList& marks_;
  PlotColors colors_ = PlotColors::ForPaper();
  QSharedPointer<ValueTicker> valueTicker_{new ValueTicker};
  QSharedPointer<ValueTicker> secondTicker_{new ValueTicker};
  QSharedPointer<TimeTicker> timeTicker_{new TimeTicker};
  PlotLegend* legend_;    // the drawing's
  MarkTicks* ticks_;      // the same
  PlotOverlay* overlay_;  // the same
  std::vector<Line> lines_;
  QCPTextElement* title_ = nullptr;  // the same; made when there is one
  QString timeTitle_;
  PlotTimes times_ = PlotTimes::Seconds;
  bool points_ = false;
  bool lineDrawn_ = true;
  bool onPaper_ = false;
};

}  // namespace quarlin
