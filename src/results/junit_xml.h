// SPDX-License-Identifier: GPL-3.0-or-later
// The result for CI servers: "junit.xml", one case for each kind of fault.
#pragma once

#include <string>

#include "results/run_result.h"

namespace quarlin {

// UTF-8. The cases are time-out, not equal, wrong length, wrong checksum, ERR, not sent, script errors and
// line errors, always in this order. One that could not have found anything, because its check is off, is
// skipped; one that found something fails once, with the count. After a set-up that failed no check was
// tried, so each that is not off is an error. No case stands for the run as a whole: how it ended is told by
// a property, by standard error and by the exit status.
std::string JunitXml(const RunResult& result);

}  // namespace quarlin
