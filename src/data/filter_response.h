// SPDX-License-Identifier: GPL-3.0-or-later
// What somebody who tunes an instrument wants to know of a filter.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "data/filter.h"

namespace quarlin {

struct FilterResponse {
  double delay = 0;  // values by which a slow change comes late; 0 both ways

  // Seconds after a step until the answer stays within 0.1 % of it; nothing where `step` ends before.
  std::optional<double> settlingTime;

  // Deviation of white noise before / after; for the median an estimate by simulation, always the same.
  // Nothing where `step` ends before the filter has settled.
  std::optional<double> noiseReduction;

  // The answer to a step from 0 to 1, as long as something happens in it, and at most 2^19 values behind the
  // step. The step is at step[stepAt]; both ways, the answer begins before it.
  std::vector<double> step;
  std::size_t stepAt = 0;

  // The gain (0 and up) at frequencies in Hz, evenly spaced by their logarithm, up to half the rate. Empty
  // for the median, which has none.
  std::vector<double> frequencies;
  std::vector<double> gains;
};

// Requires settings without an objection.
FilterResponse ResponseOf(const FilterSettings& settings, bool zeroPhase);

}  // namespace quarlin
