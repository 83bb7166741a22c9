// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/end_verdict.h"

#include <gtest/gtest.h>

#include <vector>

namespace quarlin {
namespace {

struct Row {
  EndFacts facts;
  int status;
  const char* reason;
};

TEST(EndVerdict, TheGravestReasonDecides) {
  const std::vector<Row> rows{
      {{}, 0, ""},
      {{.runAsked = true, .exchanged = true}, 0, ""},
      {{.runAsked = true}, 1, "nothing was exchanged"},
      {{.errors = 1, .exchanged = true}, 1, "1 error"},
      {{.errors = -3}, 0, ""},  // a script may write anything into a counter
      {{.cutShort = "stopped: x",
        .errors = 2,
        .notSent = 1,
        .scriptErrors = 3,
        .logLosses = "LOG.TXT lacks 1 bytes"},
       1,
       "stopped: x; 2 errors; 1 string not sent; 3 script errors; LOG.TXT lacks 1 bytes"},
      {{.linkFailure = "no such port", .errors = 1, .runAsked = true},
       2,
       "the link could not be opened: no such port"},
      {{.setUpFailure = "no script", .linkFailure = "no such port"}, 2, "no script"},
  };
  for (const Row& row : rows) {
    const EndVerdict verdict = Judge(row.facts);
    EXPECT_EQ(verdict.status, row.status) << row.reason;
    EXPECT_EQ(verdict.reason, row.reason);
  }
}

}  // namespace
}  // namespace quarlin
