// SPDX-License-Identifier: GPL-3.0-or-later
// "orig.dat" and "filter.dat": raw and filtered values for other programs, one number a line.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "base/files.h"

namespace quarlin {

// The shortest text that reads back as `value`, with a point as decimal sign whatever the locale is.
std::string NumberText(double value);

// Hands such lines, each with its end, to `take` in pieces, until that returns false. Gaps are left out.
void NumberLines(std::span<const double> values, const TakePiece& take);

// Writes `raw` to "orig.dat" and `filtered` to "filter.dat" in `folder`; each file all of it or nothing.
// Where one fails, `file` names it and the other one may have been written.
struct DataFilesOutcome {
  std::filesystem::path file;
  std::error_code error;
};
DataFilesOutcome WriteDataFiles(const std::filesystem::path& folder, std::span<const double> raw,
                                std::span<const double> filtered);

}  // namespace quarlin
