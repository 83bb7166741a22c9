// SPDX-License-Identifier: GPL-3.0-or-later
// The text files that commands come from: one entry a line, empty lines left out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/program_folder.h"

namespace quarlin {

struct LineFile {
  std::vector<std::string> lines;
  std::size_t tooLong = 0;  // lines that were left out
  std::error_code error;    // why nothing was read; that there is no such file is one, too

  // What the user must know about the file of that name; empty for nothing, and for no file.
  std::string Trouble(std::string_view name) const;
};

inline constexpr std::size_t largestLineFile = std::size_t{16} << 20;  // bytes; a larger one is not read
inline constexpr std::size_t longestLine = 32767;                      // bytes; as much as a text box takes

// The entries of a file of the folder as it is now, such as Command.txt or Parser.txt.
LineFile ReadLineFile(const ProgramFolder& folder, std::string_view name);

}  // namespace quarlin
