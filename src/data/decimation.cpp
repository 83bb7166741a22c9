// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/decimation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quarlin {
namespace {

constexpr std::size_t mostInColumn = 4;  // what stands for a column: its first, lowest, highest, last point

void AddAll(const Series& series, std::size_t begin, std::size_t end, std::vector<Point>& points) {
  for (std::size_t i = begin; i < end; ++i) points.push_back(series.At(i));
}

// The line enters a column at its first point and leaves it at its last one, which may be gaps; what is
// between them is one upright stroke, whose order nobody sees.
void AddColumn(const Series& series, std::size_t begin, std::size_t end, double strokeAt,
               std::vector<Point>& points) {
  if (end - begin <= mostInColumn) return AddAll(series, begin, end, points);
  const Point first = series.At(begin);
  const Point last = series.At(end - 1);
  points.push_back(first);
  const Series::Extremes extremes = series.ExtremesOf(begin, end);
  if (extremes.low > extremes.high) return;  // nothing but gaps
  const double time = std::clamp(strokeAt, first.time, last.time);
  points.push_back({time, extremes.low});
  points.push_back({time, extremes.high});
  points.push_back(last);
}

}  // namespace

std::vector<Point> Decimated(const Series& series, double from, double to, int columns) {
  std::vector<Point> points;
  if (columns < 1 || !(from < to) || !std::isfinite(to - from)) return points;
  const auto parts = static_cast<std::size_t>(columns);
  const std::size_t begin = series.IndexAt(from);
  const std::size_t end = series.IndexAt(std::nextafter(to, std::numeric_limits<double>::infinity()));
  points.reserve(std::min(end - begin, parts * mostInColumn) + 2);

  if (begin > 0) points.push_back(series.At(begin - 1));
  if (end - begin <= parts * mostInColumn) {
    AddAll(series, begin, end, points);
  } else {
    const double width = (to - from) / columns;
    std::size_t next = begin;
    for (std::size_t column = 0; column < parts; ++column) {
      const double right = from + width * static_cast<double>(column + 1);
      const std::size_t stop = column + 1 < parts ? std::min(series.IndexAt(right), end) : end;
      if (next < stop) AddColumn(series, next, stop, right - width * 0.75, points);
      next = std::max(next, stop);
    }
  }
  if (end < series.Size()) points.push_back(series.At(end));
  return points;
}

}  // namespace quarlin
