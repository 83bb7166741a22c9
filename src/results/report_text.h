// SPDX-License-Identifier: GPL-3.0-or-later
// The report for people: "Report.txt", and what a run without a window prints at its end.
#pragma once

#include <string>

#include "results/run_result.h"

namespace quarlin {

// With CR LF line ends. The lines up to the error list are always the same ones. Behind them come, where
// there is something to say, what was not sent, the errors of scripts and of the line, what the logs lost,
// and the time, number and detail of every listed error, as its tool tip tells them: they belong to the entry
// and leave with it, whatever a script does to the list.
std::string ReportText(const RunResult& result);

}  // namespace quarlin
