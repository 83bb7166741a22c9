// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cmath>

#include "script/values/arguments.h"
#include "script/vbscript/functions/date_line.h"

namespace quarlin::vbs {
namespace {

Value Now(LibraryContext& context, Arguments) {
  return Value::Date(DateOfSeconds(SecondsNow(context)));
}

Value Today(LibraryContext& context, Arguments) {
  const std::int64_t now = SecondsNow(context);
  return Value::Date(static_cast<double>(FloorDivide(now, secondsPerDay)));
}

Value TimeOfDay(LibraryContext& context, Arguments) {
  const std::int64_t now = SecondsNow(context);
  return Value::Date(DateOfSeconds(now - FloorDivide(now, secondsPerDay) * secondsPerDay));
}

Value Timer(LibraryContext& context, Arguments) {
  return Value::Single(static_cast<float>(SecondsSinceMidnight(context.services.Time().Local())));
}

// Years of two digits are those from 1930 to 2029.
Value DateSerial(LibraryContext&, Arguments arguments) {
  constexpr int firstYearInFull = 100;
  constexpr int firstYearOf1900s = 30;
  int year = ToInteger(arguments[0]);
  const int month = ToInteger(arguments[1]);
  const int day = ToInteger(arguments[2]);
  if (year < 0) throw ScriptError(invalidCall);
  if (year < firstYearInFull) year += year < firstYearOf1900s ? 2000 : 1900;
  return Value::Date(DaysOf(year, month, day));
}

Value TimeSerial(LibraryContext&, Arguments arguments) {
  const int hour = ToInteger(arguments[0]);
  const int minute = ToInteger(arguments[1]);
  const int second = ToInteger(arguments[2]);
  return Value::Date(TimeOf(hour, minute, second));
}

// A date, or a text that is one; a number is none here. Errors 13 and 94.
double DateProper(const LibraryContext& context, const Value& value) {
  const Value plain = Plain(value);
  if (plain.Is(Kind::Date)) return plain.AsReal();
  const auto date = DateOfGivenText(context, GivenText(plain).View());
  if (!date) throw ScriptError(typeMismatch);
  return *date;
}

Value DateValue(LibraryContext& context, Arguments arguments) {
  return Value::Date(std::trunc(DateProper(context, arguments[0])));
}

Value TimeValue(LibraryContext& context, Arguments arguments) {
  const double date = DateProper(context, arguments[0]);
  return Value::Date(std::fabs(date - std::trunc(date)));
}

template <int DateParts::*part>
Value Part(LibraryContext& context, Arguments arguments) {
  if (StandsForNull(arguments[0])) return Value::Null();
  return Value::Integer(static_cast<std::int16_t>(PartsOfDate(GivenDate(context, arguments[0])).*part));
}

Value Weekday(LibraryContext& context, Arguments arguments) {
  const int firstDay = FirstDayOfWeek(arguments, 1);
  if (StandsForNull(arguments[0])) return Value::Null();
  const int weekday = WeekdayOf(DayOfDate(GivenDate(context, arguments[0])), firstDay);
  return Value::Integer(static_cast<std::int16_t>(weekday));
}

Value MonthName(LibraryContext& context, Arguments arguments) {
  const DateNames& names = *context.locale.Chosen().names;
  const std::int32_t month = CountOf(arguments[0]);
  if (month < 1 || month > static_cast<std::int32_t>(names.months.size())) throw ScriptError(invalidCall);
  const auto& chosen = FlagOr(arguments, 1, false) ? names.shortMonths : names.months;
  return Value::String(chosen[static_cast<std::size_t>(month) - 1]);
}

Value WeekdayName(LibraryContext& context, Arguments arguments) {
  const DateNames& names = *context.locale.Chosen().names;
  constexpr auto days = std::int32_t{std::tuple_size_v<decltype(names.weekdays)>};
  const std::int32_t weekday = CountOf(arguments[0]);
  if (weekday < 1 || weekday > days) throw ScriptError(invalidCall);
  const bool shortened = FlagOr(arguments, 1, false);
  const std::int32_t sinceSunday = (weekday - 1 + FirstDayOfWeek(arguments, 2) - 1) % days;
  const auto& chosen = shortened ? names.shortWeekdays : names.weekdays;
  return Value::String(chosen[static_cast<std::size_t>(sinceSunday)]);
}

constexpr auto functions = std::to_array<Builtin>({
    {u"Date", 0, 0, Today},
    {u"DateAdd", 3, 3, DateAdd},
    {u"DateDiff", 3, 5, DateDiff},
    {u"DatePart", 2, 4, DatePart},
    {u"DateSerial", 3, 3, DateSerial},
    {u"DateValue", 1, 1, DateValue},
    {u"Day", 1, 1, Part<&DateParts::day>},
    {u"Hour", 1, 1, Part<&DateParts::hour>},
    {u"Minute", 1, 1, Part<&DateParts::minute>},
    {u"Month", 1, 1, Part<&DateParts::month>},
    {u"MonthName", 1, 2, MonthName},
    {u"Now", 0, 0, Now},
    {u"Second", 1, 1, Part<&DateParts::second>},
    {u"Time", 0, 0, TimeOfDay},
    {u"Timer", 0, 0, Timer},
    {u"TimeSerial", 3, 3, TimeSerial},
    {u"TimeValue", 1, 1, TimeValue},
    {u"Weekday", 1, 2, Weekday},
    {u"WeekdayName", 1, 3, WeekdayName},
    {u"Year", 1, 1, Part<&DateParts::year>},
});

}  // namespace

std::span<const Builtin> DateFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
