// SPDX-License-Identifier: GPL-3.0-or-later
// A tick on the time axis: where a request got no answer, or a wrong one.
#pragma once

#include <cstdint>

namespace quarlin {

enum class MarkKind { TimeOut, WrongAnswer };

struct Mark {
  double time;  // as in the curves, seconds
  MarkKind kind;
  std::uint64_t exchange;  // its number in the record of the run
};

}  // namespace quarlin
