// SPDX-License-Identifier: GPL-3.0-or-later
// What comes with the program for somebody who is here for the first time. Any of it may be missing, where
// the program was copied alone.
#pragma once

#include <filesystem>

#include "base/program_folder.h"

namespace quarlin {

struct Bundle {
  std::filesystem::path examples;    // a folder of files for the program folder
  std::filesystem::path instrument;  // the program that simulates an instrument
  std::filesystem::path scratch;     // where to put what nobody keeps
};

// Where these are, or would be, beside an executable.
Bundle FindBundle(const std::filesystem::path& executable, const Environment& environment);

}  // namespace quarlin
