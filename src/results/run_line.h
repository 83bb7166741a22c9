// SPDX-License-Identifier: GPL-3.0-or-later
// A run in one line, as the status bar tells its end.
#pragma once

#include <string>
#include <string_view>

#include "exchange/run_record.h"
#include "results/run_result.h"

namespace quarlin {

// "finished: 100 sent, 100 answered, 0 errors, 12.3 ms mean", or "stopped (WHY): ...", where `why` may be
// empty. Texts that did not leave, and requests that nobody answered while others were, are told where there
// are some.
std::string RunInOneLine(const RunRecord& record, HowEnded how, std::string_view why);

}  // namespace quarlin
