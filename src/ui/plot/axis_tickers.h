// SPDX-License-Identifier: GPL-3.0-or-later
// The numbers at the axes: as many digits as two neighbours differ in, also far from zero.
#pragma once

#include <qcustomplot.h>

#include "ui/plot/plot_span.h"

namespace quarlin {

class ValueTicker : public QCPAxisTicker {
 protected:
  double getTickStep(const QCPRange& range) override;
  QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override;

  double step_ = 1;
};

// Seconds, for long stretches m:ss or h:mm:ss; or the numbers of rows.
class TimeTicker : public ValueTicker {
 public:
  void SetTimes(PlotTimes times) { times_ = times; }

 protected:
  double getTickStep(const QCPRange& range) override;
  QString getTickLabel(double tick, const QLocale& locale, QChar formatChar, int precision) override;

 private:
  PlotTimes times_ = PlotTimes::Seconds;
  Span range_;
};

// What the numbers of a time axis are, "s", "min:s" or "h:min:s"; empty for rows.
QString TimeUnit(PlotTimes times, const Span& range);

// `value` with the digits that tell it from `value` + `step`.
QString ReadingText(double value, double step);

// A time as the axis tells it over `range`, with the digits for `step`.
QString TimeText(double time, PlotTimes times, const Span& range, double step);

}  // namespace quarlin
