// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <chrono>
#include <cmath>

#include "script/values/conversions.h"
#include "script/values/date_range.h"

namespace quarlin::vbs {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::sys_days dayZero{1899y / std::chrono::December / 30};
constexpr double secondsPerDay = 86400;
constexpr int secondsPerMinute = 60;
constexpr int secondsPerHour = 3600;
constexpr int monthsPerYear = 12;
constexpr int mostYears = 30'000;  // what the calendar below can take, either side of year 0

}  // namespace

DateParts PartsOfDate(double days) {
  days = std::clamp(days, std::nextafter(firstDate - 1, 0), firstBeyondDates - 1 / secondsPerDay);
  double whole = std::trunc(days);
  double seconds = std::round(std::abs(days - whole) * secondsPerDay);
  if (seconds >= secondsPerDay) {
    seconds = 0;
    ++whole;
  }
  const std::chrono::year_month_day date(dayZero + std::chrono::days(static_cast<int>(whole)));
  const int time = static_cast<int>(seconds);
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = time / secondsPerHour,
          .minute = time / secondsPerMinute % secondsPerMinute,
          .second = time % secondsPerMinute};
}

double DaysOf(int year, int month, int day) {
  const std::int64_t months = std::int64_t{year} * monthsPerYear + month - 1;
  const std::int64_t fullYears = (months < 0 ? months - monthsPerYear + 1 : months) / monthsPerYear;
  if (std::abs(fullYears) > mostYears) throw ScriptError(invalidCall);
  const auto monthInYear = static_cast<unsigned>(months - fullYears * monthsPerYear) + 1;
  const std::chrono::sys_days first{std::chrono::year(static_cast<int>(fullYears)) /
                                    std::chrono::month(monthInYear) / 1};
  const auto days = static_cast<double>((first - dayZero).count()) + day - 1;
  if (!IsInDateRange(days)) throw ScriptError(invalidCall);
  return days;
}

double TimeOf(int hour, int minute, int second) {
  const std::int64_t seconds =
      std::int64_t{hour} * secondsPerHour + std::int64_t{minute} * secondsPerMinute + second;
  return static_cast<double>(seconds) / secondsPerDay;
}

}  // namespace quarlin::vbs
