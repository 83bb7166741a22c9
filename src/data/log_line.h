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

}  // namespace quarlin
