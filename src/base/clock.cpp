// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/clock.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <ctime>

namespace quarlin {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

constexpr double secondsPerDay = 86400;

}  // namespace

Instant SystemClock::Now() const {
  return std::chrono::steady_clock::now();
}

LocalTime SystemClock::Local() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t quarter = floor<seconds>(sinceEpoch).count() / 900;
  if (quarter != quarterHour_) {
    const std::time_t time = floor<seconds>(sinceEpoch).count();
    std::tm parts{};
    localtime_r(&time, &parts);
    offset_ = seconds(parts.tm_gmtoff);
    quarterHour_ = quarter;
  }
  return LocalTime(std::chrono::nanoseconds(sinceEpoch) + offset_);
}

std::chrono::nanoseconds FileClockNow() {
  return std::chrono::system_clock::now().time_since_epoch();
}

double SecondsSinceMidnight(LocalTime time) {
  return std::chrono::duration<double>(time - floor<days>(time)).count();
}

double SecondsApart(double earlier, double later) {
  const double apart = std::fmod(later - earlier, secondsPerDay);
  return apart < 0 ? apart + secondsPerDay : apart;
}

std::uint32_t MillisecondTick(Instant now) {
  return static_cast<std::uint32_t>(floor<std::chrono::milliseconds>(now.time_since_epoch()).count());
}

std::string DateText(LocalTime time) {
  const std::chrono::year_month_day date(floor<days>(time));
  return fmt::format("{:02}/{:02}/{:02}", static_cast<unsigned>(date.day()),
                     static_cast<unsigned>(date.month()), static_cast<int>(date.year()) % 100);
}

std::string TimeText(LocalTime time) {
  return ElapsedText(time - floor<days>(time));
}

std::string DateTimeText(LocalTime time) {
  return DateText(time) + " " + TimeText(time);
}

std::chrono::seconds UtcOffsetAt(LocalTime time) {
  const std::chrono::year_month_day date(floor<days>(time));
  const std::chrono::hh_mm_ss clock(floor<seconds>(time - floor<days>(time)));
  std::tm parts{};
  parts.tm_year = static_cast<int>(date.year()) - 1900;
  parts.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  parts.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  parts.tm_hour = static_cast<int>(clock.hours().count());
  parts.tm_min = static_cast<int>(clock.minutes().count());
  parts.tm_sec = static_cast<int>(clock.seconds().count());
  parts.tm_isdst = -1;
  std::mktime(&parts);  // fills in the rest
  return seconds(parts.tm_gmtoff);
}

std::string IsoText(LocalTime time) {
  const std::chrono::year_month_day date(floor<days>(time));
  return fmt::format("{:04}-{:02}-{:02}T{}", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), TimeText(time));
}

std::string IsoText(LocalTime time, seconds utcOffset) {
  const auto fraction = floor<std::chrono::microseconds>(time - floor<seconds>(time)).count();
  const std::int64_t minutes = std::abs(utcOffset.count()) / 60;
  return fmt::format("{}.{:06}{}{:02}:{:02}", IsoText(time), fraction, utcOffset.count() < 0 ? '-' : '+',
                     minutes / 60, minutes % 60);
}

std::string ElapsedText(Duration elapsed) {
  const std::int64_t total = floor<seconds>(elapsed).count();
  return fmt::format("{:02}:{:02}:{:02}", total / 3600, total / 60 % 60, total % 60);
}

}  // namespace quarlin
