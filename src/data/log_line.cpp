// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/log_line.h"

#include <algorithm>

#include "base/numbers.h"
#include "data/row_time.h"

namespace quarlin {
namespace {

constexpr std::string_view mark = "2026-11-22 10:00:00.135 <- ";
constexpr std::size_t timeLength = mark.find(" <-");

bool IsDate(std::string_view text) {
  const auto time = TimeIn(text);
  return time && time->kind == RowTime::Kind::Date;
}

}  // namespace

std::optional<LogLine> LogLineIn(std::string_view line) {
  // the two hyphens tell most other lines at once
  if (line.size() + 1 < mark.size() || line[4] != '-' || line[7] != '-') return std::nullopt;
  const std::string_view direction = line.substr(timeLength, 3);
  if ((direction != " <-" && direction != " ->") || !IsDate(line.substr(0, timeLength))) return std::nullopt;
  const std::string_view text =
      line.substr(std::min(mark.size(), line.size()));  // without any it may end at the arrow
  return LogLine{line.substr(0, timeLength), direction == " <-", text};
}

bool IsStamp(std::string_view line) {
  constexpr std::string_view stampMark = "-->";
  return line.starts_with(stampMark) && IsDate(line.substr(stampMark.size()));
}

std::string WithoutCodes(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool framed = i + 3 < text.size() && text[i] == '{' && text[i + 3] == '}';
    const int high = framed ? HexDigitValue(text[i + 1]) : -1;
    const int low = framed ? HexDigitValue(text[i + 2]) : -1;
    if (high < 0 || low < 0) {
      plain += text[i];
      continue;
    }
    plain += static_cast<char>(high * 16 + low);
    i += 3;
  }
  return plain;
}

std::optional<RowContent::Found> RowContent::operator()(std::string_view line) {
  const bool blank = line.find_first_not_of(" \t") == std::string_view::npos;
  if (blank || IsStamp(line)) return std::nullopt;
  const auto logged = LogLineIn(line);
  if (!logged) return Found{line, {}};
  if (!logged->received) return std::nullopt;
  plain_ = WithoutCodes(logged->text);
  return Found{plain_, logged->time};
}

}  // namespace quarlin
