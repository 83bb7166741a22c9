// SPDX-License-Identifier: GPL-3.0-or-later
// Lines that this program's own logs have besides what they log.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

// A row of a log with times and directions:
//
//   2026-11-22 10:00:00.135 <- 12.346 kg{0D}{0A}
struct LogLine {
  std::string_view time;
  bool received = false;  // "<-", and not "->"
  std::string_view text;  // with codes in braces
};
std::optional<LogLine> LogLineIn(std::string_view line);

// The line "-->22/11/26 10:00:00" between the traffic of a log without times.
bool IsStamp(std::string_view line);

// Each code in braces, "{0D}", as the character that it stands for.
std::string WithoutCodes(std::string_view text);

// What of a line holds what was measured: all of it, or what a log received, without its codes.
class RowContent {
 public:
  struct Found {
    std::string_view text;      // lives until the next call
    std::string_view loggedAt;  // empty: it is no row of a log
  };

  // Nothing for a blank line, a stamp, and what was sent.
  std::optional<Found> operator()(std::string_view line);

 private:
  std::string plain_;
};

}  // namespace quarlin
