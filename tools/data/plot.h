// SPDX-License-Identifier: GPL-3.0-or-later
// The picture of `quarlin-data plot`.
#pragma once

#include <string>
#include <vector>

#include "data/series.h"

namespace quarlin::data_tool {

// Draws `curves`, the raw one first, over seconds where `timed`, else over the numbers of their rows, into a
// file whose name ends in .svg or .png; all of it or nothing. Needs no display. Returns why it could not, as
// a line for the user, or an empty text.
std::string DrawPlot(const std::vector<Series>& curves, bool timed, const std::string& file);

}  // namespace quarlin::data_tool
