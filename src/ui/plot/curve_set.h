// SPDX-License-Identifier: GPL-3.0-or-later
// The curves of a plot as it asks for them: their extent, the points to draw, what stood at a time.
#pragma once

#include <QString>
#include <limits>
#include <optional>
#include <vector>

#include "data/series.h"
#include "ui/plot/plot_span.h"

namespace quarlin {

struct CurveLook {
  const Series* series = nullptr;  // not owned: it outlives its stay in the plot
  QString title;                   // in the legend
  bool secondAxis = false;         // its values are read at the right
  bool thin = false;               // behind the others and paler, in the colour of the next one that is not
                                   // thin: raw values behind filtered ones
  bool visible = true;
};

class CurveSet {
 public:
  static constexpr double forEver = std::numeric_limits<double>::infinity();

  void Set(std::vector<CurveLook> looks) { looks_ = std::move(looks); }
  const std::vector<CurveLook>& Looks() const { return looks_; }

  // Points after `time` count as not there.
  void EndAt(double time) { end_ = time; }

  // Of the visible ones. Nothing, or low > high, where there is no point.
  std::optional<Span> Times() const;
  Series::Extremes Values(Span time, bool secondAxis) const;
  bool UsesSecondAxis() const;

  // The points of a curve to draw, see Decimated.
  std::vector<Point> Drawn(const CurveLook& look, Span time, int columns) const;

  // The point of a curve that is nearest in time; it may be a gap.
  std::optional<Point> Nearest(const CurveLook& look, double time) const;

 private:
  std::size_t EndOf(const Series& series) const;

  std::vector<CurveLook> looks_;
  double end_ = forEver;
};

}  // namespace quarlin
