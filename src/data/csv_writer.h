// SPDX-License-Identifier: GPL-3.0-or-later
// Curves as a table for other programs.
#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "data/series.h"

namespace quarlin {

// `name` is that of the column; behind it stands the unit of the series.
struct CsvCurve {
  const Series* series = nullptr;
  std::string name;
};

// A row of names with units, then one for each time at which a curve has a point: the time, and a column for
// each curve, empty where it has a gap or no point then. Separated by commas, point as decimal sign, the
// shortest texts that read back the same; lines end with LF. Handed to `take` in order, a piece at a time;
// stops where it returns false.
void CsvLines(std::span<const CsvCurve> curves, std::string_view timeTitle,
              const std::function<bool(std::string_view piece)>& take);

// The same as a file: all of it or nothing.
std::error_code WriteCsv(const std::filesystem::path& file, std::span<const CsvCurve> curves,
                         std::string_view timeTitle);

}  // namespace quarlin
