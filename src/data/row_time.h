// SPDX-License-Identifier: GPL-3.0-or-later
// The times of a table's rows: seconds, times of day, dates and times.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quarlin {

struct RowTime {
  enum class Kind { Seconds, OfDay, Date };
  Kind kind = Kind::Seconds;
  double seconds = 0;                   // Seconds
  std::chrono::nanoseconds instant{0};  // OfDay: since midnight; Date: since 1970
};

// The time that `text` begins with: "12.5", "10:00", "10:00:00.250" (more than 24 hours as well, for what has
// elapsed), "2026-11-22 10:00:00,250", "2026-11-22T10:00:00+01:00", and with the day first "22/11/26
// 10:00:00", "22.11.2026". Without a distance to UTC a date is taken as one of UTC. Nothing else may stand
// behind a date or a time of day.
std::optional<RowTime> TimeIn(std::string_view text);

// The time in that column of a row, from 1. A date without a time of day takes that of the next column.
std::optional<RowTime> TimeInColumn(std::string_view row, int column, char separator);

// The same as seconds that run on. Seconds stay as they are; of the others the first one is 0, and a time of
// day far before the last one is one of the next day.
class RowClock {
 public:
  // Nothing where it is of another kind than the times before.
  std::optional<double> Seconds(const RowTime& time);

 private:
  std::optional<RowTime> first_;
  std::chrono::nanoseconds last_{0};
  std::int64_t days_ = 0;
};

}  // namespace quarlin
