// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/row_time.h"

#include <cstdint>

#include "data/cells.h"
#include "data/number_text.h"

namespace quarlin {
namespace {

using std::chrono::nanoseconds;

// Takes a time apart from its beginning on.
class TimeText {
 public:
  explicit TimeText(std::string_view text) : rest_(text) {}

  bool AtEnd() const { return rest_.empty(); }

  bool Skip(char character) {
    if (!rest_.starts_with(character)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool SkipBlanks() {
    const bool some = Skip(' ');
    while (Skip(' ')) {
    }
    return some;
  }

  // A number of that many digits and no more.
  std::optional<int> Digits(std::size_t fewest, std::size_t most) {
    int value = 0;
    std::size_t count = 0;
    while (count < rest_.size() && rest_[count] >= '0' && rest_[count] <= '9') {
      if (count == most) return std::nullopt;
      value = value * 10 + (rest_[count++] - '0');
    }
    if (count < fewest) return std::nullopt;
    rest_.remove_prefix(count);
    return value;
  }

  // ".250" or ",250"; further digits than nine do not count.
  nanoseconds Fraction() {
    if (!Skip('.') && !Skip(',')) return nanoseconds(0);
    std::int64_t value = 0;
    std::int64_t weight = 1'000'000'000;
    for (; !rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9'; rest_.remove_prefix(1)) {
      if (weight == 1) continue;
      weight /= 10;
      value += weight * (rest_.front() - '0');
    }
    return nanoseconds(value);
  }

 private:
  std::string_view rest_;
};

std::optional<nanoseconds> OfDay(TimeText& text) {
  const auto hours = text.Digits(1, 5);
  if (!hours || !text.Skip(':')) return std::nullopt;
  const auto minutes = text.Digits(2, 2);
  if (!minutes || *minutes > 59) return std::nullopt;
  nanoseconds time = std::chrono::hours(*hours) + std::chrono::minutes(*minutes);
  if (!text.Skip(':')) return time;
  const auto seconds = text.Digits(2, 2);
  if (!seconds || *seconds > 60) return std::nullopt;
  return time + std::chrono::seconds(*seconds) + text.Fraction();
}

std::optional<std::chrono::sys_days> DayOf(int year, int month, int day) {
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  const bool counts = year >= 1900 && year <= 2150;  // their distance in nanoseconds has room in 64 bits
  return counts && date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

// "2026-11-22", "2026/11/22", "22/11/26", "22.11.2026".
std::optional<std::chrono::sys_days> Day(TimeText& text) {
  const auto first = text.Digits(1, 4);
  if (!first) return std::nullopt;
  const char separator = text.Skip('-') ? '-' : text.Skip('/') ? '/' : text.Skip('.') ? '.' : '\0';
  const auto month = text.Digits(1, 2);
  if (separator == '\0' || !month || !text.Skip(separator)) return std::nullopt;
  const auto last = text.Digits(1, 4);
  if (!last) return std::nullopt;
  if (*first >= 1000) return separator != '.' ? DayOf(*first, *month, *last) : std::nullopt;
  if (separator == '-') return std::nullopt;
  return DayOf(*last < 100 ? 2000 + *last : *last, *month, *first);
}

// What an instant with this at its end is ahead of UTC: "Z", "+01:00", "-0530", or nothing.
std::optional<nanoseconds> Zone(TimeText& text) {
  if (text.AtEnd() || text.Skip('Z')) return nanoseconds(0);
  const bool ahead = text.Skip('+');
  if (!ahead && !text.Skip('-')) return std::nullopt;
  const auto digits = text.Digits(2, 4);
  if (!digits) return std::nullopt;
  const bool together = *digits > 99;
  const int hours = together ? *digits / 100 : *digits;
  const auto minutes = together ? *digits % 100 : text.Skip(':') ? text.Digits(2, 2) : 0;
  if (!minutes) return std::nullopt;
  const nanoseconds offset = std::chrono::hours(hours) + std::chrono::minutes(*minutes);
  return ahead ? offset : -offset;
}

std::optional<RowTime> DateIn(std::string_view written) {
  TimeText text(written);
  const auto day = Day(text);
  if (!day) return std::nullopt;
  RowTime time{RowTime::Kind::Date, 0, day->time_since_epoch()};
  if (text.AtEnd()) return time;
  if (!text.Skip('T') && !text.SkipBlanks()) return std::nullopt;
  const auto ofDay = OfDay(text);
  if (!ofDay) return std::nullopt;
  const auto zone = Zone(text);
  if (!zone) return std::nullopt;
  time.instant += *ofDay - *zone;
  return time;
}

std::optional<RowTime> TimeOfDayIn(std::string_view written) {
  TimeText text(written);
  const auto time = OfDay(text);
  return time && text.AtEnd() ? std::optional(RowTime{RowTime::Kind::OfDay, 0, *time}) : std::nullopt;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<RowTime> TimeIn(std::string_view text) {
  const std::string_view written = WithoutBlanks(text);
  if (written.find(':') != std::string_view::npos) {
    const auto time = TimeOfDayIn(written);
    return time ? time : DateIn(written);
  }
  if (const auto date = DateIn(written)) return date;
  const auto number = LeadingNumber(written);
  return number ? std::optional(RowTime{RowTime::Kind::Seconds, number->value, {}}) : std::nullopt;
}

std::optional<RowTime> TimeInColumn(std::string_view row, int column, char separator) {
  const auto cell = CellAt(row, column, separator);
  auto time = cell ? TimeIn(*cell) : std::nullopt;
  if (!time || time->kind != RowTime::Kind::Date || cell->find(':') != std::string_view::npos) return time;
  const auto next = CellAt(row, column + 1, separator);
  const auto ofDay = next ? TimeIn(*next) : std::nullopt;
  if (ofDay && ofDay->kind == RowTime::Kind::OfDay) time->instant += ofDay->instant;
  return time;
}

std::optional<double> RowClock::Seconds(const RowTime& time) {
  if (!first_) {
    first_ = time;
    last_ = time.instant;
  }
  if (time.kind != first_->kind) return std::nullopt;
  if (time.kind == RowTime::Kind::Seconds) return time.seconds;
  if (time.kind == RowTime::Kind::OfDay && time.instant + std::chrono::hours(12) < last_) ++days_;
  last_ = time.instant;
  const double days = 86400.0 * static_cast<double>(days_);
  return days + static_cast<double>((time.instant - first_->instant).count()) / 1e9;
}

}  // namespace quarlin
