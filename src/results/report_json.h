// SPDX-License-Identifier: GPL-3.0-or-later
// The result for programs: "Report.json". docs/results.md tells it in words, docs/report.schema.json exactly.
#pragma once

#include <string>

#include "results/run_result.h"

namespace quarlin {

// UTF-8, whatever bytes came over the wire; ends with a line end.
std::string ReportJson(const RunResult& result);

}  // namespace quarlin
