// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/functions/date_line.h"

#include <chrono>
#include <cmath>

#include "script/values/arguments.h"
#include "script/values/date_range.h"

namespace quarlin::vbs {
namespace {

constexpr std::int64_t daysPerWeek = 7;
constexpr std::int64_t dayZero = 6;  // days since Sunday

}  // namespace

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
  const std::int64_t quotient = value / divisor;
  return value % divisor < 0 ? quotient - 1 : quotient;
}

std::int64_t SecondsOfDate(double date) {
  const double day = std::trunc(date);
  const double time = std::fabs(date - day);
  return static_cast<std::int64_t>(day) * secondsPerDay +
         std::llround(time * static_cast<double>(secondsPerDay));
}

double DateOfSeconds(std::int64_t seconds) {
  const std::int64_t day = FloorDivide(seconds, secondsPerDay);
  if (!IsInDateRange(static_cast<double>(day))) throw ScriptError(invalidCall);
  const double time = static_cast<double>(seconds - day * secondsPerDay) / static_cast<double>(secondsPerDay);
  return static_cast<double>(day) + (day < 0 ? -time : time);
}

std::int64_t DayOfDate(double date) {
  return FloorDivide(SecondsOfDate(date), secondsPerDay);
}

int WeekdayOf(std::int64_t day, int firstDay) {
  const std::int64_t sinceFirst = day + dayZero - (firstDay - 1);
  return static_cast<int>(sinceFirst - FloorDivide(sinceFirst, daysPerWeek) * daysPerWeek) + 1;
}

std::int64_t SecondsNow(const LibraryContext& context) {
  constexpr std::int64_t daysToEpoch = 25569;  // 1 January 1970, from which the clock counts
  const auto local = context.services.Time().Local().time_since_epoch();
  return daysToEpoch * secondsPerDay + std::chrono::floor<std::chrono::seconds>(local).count();
}

std::optional<double> DateOfGivenText(const LibraryContext& context, std::u16string_view text) {
  return DateOfText(text, PartsOfDate(DateOfSeconds(SecondsNow(context))).year);
}

double GivenDate(const LibraryContext& context, const Value& value) {
  if (value.Is(Kind::Date)) return value.AsReal();
  const Value plain = Plain(value);
  if (plain.IsString()) {
    if (const auto date = DateOfGivenText(context, plain.AsText())) return *date;
  }
  return ToDate(plain);
}

int FirstDayOfWeek(Arguments arguments, std::size_t index) {
  constexpr int sunday = 1;
  const int day = ChoiceOr(arguments, index, sunday, 0, static_cast<int>(daysPerWeek));
  return day == 0 ? CurrentLocale().firstDay : day;
}

}  // namespace quarlin::vbs
