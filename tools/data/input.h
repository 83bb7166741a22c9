// SPDX-License-Identifier: GPL-3.0-or-later
// The values that quarlin-data works on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/options.h"
#include "data/series.h"
#include "data/table_reader.h"

namespace quarlin::data_tool {

struct Input {
  Series curve;
  bool timed = false;         // its times are seconds, not numbers of rows
  std::uint64_t badRows = 0;  // without a number; gaps in the curve
  std::vector<BadRow> firstBadRows;
  std::string error;  // one line for the user; when it is not empty, there is no curve
};

// Reads the file, or standard input, to its end. An error is also a curve without any number.
Input ReadInput(const Options& options);

}  // namespace quarlin::data_tool
