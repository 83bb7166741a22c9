// SPDX-License-Identifier: GPL-3.0-or-later
// The figures of a curve as text for people and for programs.
#pragma once

#include <string>

#include "data/statistics.h"

namespace quarlin::data_tool {

// `unit` may be empty. The drift is said where `timed`: the points' times are seconds.
std::string FiguresAsText(const Statistics& statistics, const std::string& unit, bool timed);
std::string FiguresAsJson(const Statistics& statistics, const std::string& unit, bool timed);

}  // namespace quarlin::data_tool
