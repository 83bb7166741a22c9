// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/plot/curve_set.h"

#include <algorithm>
#include <cmath>

#include "data/decimation.h"

namespace quarlin {

std::size_t CurveSet::EndOf(const Series& series) const {
  if (end_ == forEver) return series.Size();
  return series.IndexAt(std::nextafter(end_, forEver));
}

std::optional<Span> CurveSet::Times() const {
  Series::Extremes times;
  for (const CurveLook& look : looks_) {
    const std::size_t end = EndOf(*look.series);
    if (!look.visible || end == 0) continue;
    times.Take(look.series->At(0).time);
    times.Take(look.series->At(end - 1).time);
  }
  if (times.low > times.high) return {};
  return Span{times.low, times.high};
}

Series::Extremes CurveSet::Values(Span time, bool secondAxis) const {
  Series::Extremes values;
  for (const CurveLook& look : looks_) {
    if (!look.visible || look.secondAxis != secondAxis) continue;
    const Series& series = *look.series;
    const std::size_t end = std::min(EndOf(series), series.IndexAt(std::nextafter(time.to, forEver)));
    values.Take(series.ExtremesOf(std::min(series.IndexAt(time.from), end), end));
  }
  return values;
}

bool CurveSet::UsesSecondAxis() const {
  return std::any_of(looks_.begin(), looks_.end(),
                     [](const CurveLook& look) { return look.visible && look.secondAxis; });
}

std::vector<Point> CurveSet::Drawn(const CurveLook& look, Span time, int columns) const {
  if (!look.visible) return {};
  std::vector<Point> points = Decimated(*look.series, time.from, time.to, columns);
  while (!points.empty() && points.back().time > end_) points.pop_back();
  return points;
}

std::optional<Point> CurveSet::Nearest(const CurveLook& look, double time) const {
  const Series& series = *look.series;
  const std::size_t end = EndOf(series);
  if (end == 0) return {};
  const std::size_t right = std::min(series.IndexAt(time), end - 1);
  const Point after = series.At(right);
  if (right == 0) return after;
  const Point before = series.At(right - 1);
  return std::abs(time - before.time) <= std::abs(after.time - time) ? before : after;
}

}  // namespace quarlin
