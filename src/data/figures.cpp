// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/figures.h"

namespace quarlin {

std::vector<Figure> FiguresOf(const Statistics& statistics, bool timed) {
  return {{"mean", "mean", statistics.mean},
          {"standard_deviation", "standard deviation", statistics.standardDeviation},
          {"minimum", "minimum", statistics.minimum},
          {"maximum", "maximum", statistics.maximum},
          {"peak_to_peak", "peak to peak", statistics.peakToPeak},
          {"median", "median", statistics.median},
          {"drift_per_hour", "drift per hour", timed ? statistics.driftPerHour : std::nullopt, true},
          {"repeatability", "repeatability", statistics.repeatability}};
}

}  // namespace quarlin
