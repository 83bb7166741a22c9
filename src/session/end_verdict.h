// SPDX-License-Identifier: GPL-3.0-or-later
// What the program says of itself when it ends: the exit status, and why.
//
//   0  what was asked for was done, without an error
//   1  an error was counted, or a run ended before its end, or "RUN" was given and nothing was exchanged
//   2  the link could not be opened, or the set-up failed: nothing was begun
//
// A script that says how it finished has the last word, whatever there was.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quarlin {

// Everything that the verdict depends on. Texts are empty where there is nothing of the kind.
struct EndFacts {
  std::optional<int> finished{};  // with which status, as the script says
  std::string setUpFailure{};
  std::string linkFailure{};  // why the link that was asked for could not be opened
  std::string cutShort{};     // what ended a run before its end, or took the link away
  std::int32_t errors = 0;    // as counted in lblerror
  std::int32_t notSent = 0;   // as counted in lblNotSent
  std::uint64_t scriptErrors = 0;
  std::string logLosses{};
  bool runAsked = false;   // "RUN" was given
  bool exchanged = false;  // a string was sent, or one came
};

struct EndVerdict {
  int status = 0;
  std::string reason;  // one line; empty with status 0
};

EndVerdict Judge(const EndFacts& facts);

}  // namespace quarlin
