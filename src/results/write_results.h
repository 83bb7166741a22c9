// SPDX-License-Identifier: GPL-3.0-or-later
// Puts the result for machines where they look for it.
#pragma once

#include <string>
#include <vector>

#include "base/program_folder.h"
#include "results/run_result.h"

namespace quarlin {

// Writes "Report.json" and "junit.xml" into the folder, each whole or not at all. Returns a line for each
// that could not be written, naming it and the reason.
std::vector<std::string> WriteResults(const ProgramFolder& folder, const RunResult& result);

}  // namespace quarlin
