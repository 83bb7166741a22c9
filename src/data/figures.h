// SPDX-License-Identifier: GPL-3.0-or-later
// The figures of a curve in the order in which they are shown, each with its names.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "data/statistics.h"

namespace quarlin {

struct Figure {
  std::string_view key;      // for programs
  std::string_view caption;  // for people
  std::optional<double> value;
  bool perHour = false;  // its unit is that of the values by hours
};

// All but the count. The drift is said where `timed`: the points' times are seconds.
std::vector<Figure> FiguresOf(const Statistics& statistics, bool timed);

}  // namespace quarlin
