// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <chrono>

#include "script/values/arguments.h"
#include "script/vbscript/functions/date_line.h"

namespace quarlin::vbs {
namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

struct IntervalRow {
  std::u16string_view name;
  Interval interval;
  std::int64_t months;   // an interval is either so many months,
  std::int64_t seconds;  // or so many seconds
};

constexpr std::int64_t daysPerWeek = 7;
constexpr int monthsPerQuarter = 3;
constexpr int monthsPerYear = 12;

constexpr auto intervals = std::to_array<IntervalRow>({
    {u"yyyy", Interval::Year, monthsPerYear, 0},
    {u"q", Interval::Quarter, monthsPerQuarter, 0},
    {u"m", Interval::Month, 1, 0},
    {u"y", Interval::DayOfYear, 0, secondsPerDay},
    {u"d", Interval::Day, 0, secondsPerDay},
    {u"w", Interval::Weekday, 0, secondsPerDay},
    {u"ww", Interval::Week, 0, secondsPerDay* daysPerWeek},
    {u"h", Interval::Hour, 0, secondsPerHour},
    {u"n", Interval::Minute, 0, secondsPerMinute},
    {u"s", Interval::Second, 0, 1},
});

const IntervalRow& IntervalIn(const Value& value) {
  const GivenText name(value);
  const std::u16string_view sought = name.View();
  const auto row = std::find_if(intervals.begin(), intervals.end(),
                                [&](const IntervalRow& each) { return SameName(each.name, sought); });
  if (row == intervals.end()) throw ScriptError(invalidCall);
  return *row;
}

// Months since the year 0 began.
std::int64_t MonthsOf(const DateParts& parts) {
  return std::int64_t{parts.year} * monthsPerYear + parts.month - 1;
}

int DaysInMonth(int year, int month) {
  const auto end = std::chrono::year(year) / month / std::chrono::last;
  return static_cast<int>(static_cast<unsigned>(end.day()));
}

// The same day and time so many months later, or the last day of a shorter month.
double MonthsLater(double date, std::int64_t months) {
  constexpr std::int64_t firstYear = 100;
  constexpr std::int64_t lastYear = 9999;
  const DateParts parts = PartsOfDate(date);
  const std::int64_t sum = MonthsOf(parts) + months;
  const std::int64_t year = FloorDivide(sum, monthsPerYear);
  if (year < firstYear || year > lastYear) throw ScriptError(invalidCall);
  const int month = static_cast<int>(sum - year * monthsPerYear) + 1;
  const int day = std::min(parts.day, DaysInMonth(static_cast<int>(year), month));
  const auto target = static_cast<std::int64_t>(DaysOf(static_cast<int>(year), month, day));
  const std::int64_t time = parts.hour * secondsPerHour + parts.minute * secondsPerMinute + parts.second;
  return DateOfSeconds(target * secondsPerDay + time);
}

enum class FirstWeek { WithFirstJanuary = 1, WithFourDays = 2, Full = 3 };

// How a script has asked for weeks to be counted.
struct WeekRule {
  int firstDay;
  FirstWeek firstWeek;
};

WeekRule WeekRuleIn(Arguments arguments, std::size_t index) {
  constexpr int system = 0;
  const int day = FirstDayOfWeek(arguments, index);
  const int week = ChoiceOr(arguments, index + 1, system, system, static_cast<int>(FirstWeek::Full));
  return {day, week == system ? FirstWeek::WithFirstJanuary : static_cast<FirstWeek>(week)};
}

std::int64_t WeekStart(std::int64_t day, int firstDay) {
  return day - (WeekdayOf(day, firstDay) - 1);
}

// The day on which week 1 begins, of the year whose 1 January is given.
std::int64_t FirstWeekStart(std::int64_t newYear, const WeekRule& rule) {
  const std::int64_t start = WeekStart(newYear, rule.firstDay);
  const std::int64_t daysBefore = newYear - start;
  constexpr std::int64_t mostBefore = 3;  // four of the seven are in the new year
  const bool counts = rule.firstWeek == FirstWeek::WithFirstJanuary || daysBefore == 0 ||
                      (rule.firstWeek == FirstWeek::WithFourDays && daysBefore <= mostBefore);
  return counts ? start : start + daysPerWeek;
}

int WeekOfYear(std::int64_t day, int year, const WeekRule& rule) {
  const auto newYear = static_cast<std::int64_t>(DaysOf(year, 1, 1));
  std::int64_t start = FirstWeekStart(newYear, rule);
  if (day < start) {
    start = FirstWeekStart(static_cast<std::int64_t>(DaysOf(year - 1, 1, 1)), rule);
  } else if (rule.firstWeek == FirstWeek::WithFourDays) {
    const auto nextYear = static_cast<std::int64_t>(DaysOf(year, monthsPerYear, 31)) + 1;
    const std::int64_t next = FirstWeekStart(nextYear, rule);
    if (day >= next) start = next;
  }
  return static_cast<int>((day - start) / daysPerWeek) + 1;
}

// The boundaries between the two dates.
std::int64_t Crossed(const IntervalRow& row, double from, double to, const WeekRule& rule) {
  if (row.months > 0) {
    return MonthsOf(PartsOfDate(to)) / row.months - MonthsOf(PartsOfDate(from)) / row.months;
  }
  const std::int64_t first = DayOfDate(from);
  const std::int64_t last = DayOfDate(to);
  switch (row.interval) {
    case Interval::Weekday:  // whole weeks, counted from the first date
      return (last - first) / daysPerWeek;
    case Interval::Week:
      return (WeekStart(last, rule.firstDay) - WeekStart(first, rule.firstDay)) / daysPerWeek;
    default:
      return FloorDivide(SecondsOfDate(to), row.seconds) - FloorDivide(SecondsOfDate(from), row.seconds);
  }
}

int PartOf(Interval interval, double date, const WeekRule& rule) {
  const DateParts parts = PartsOfDate(date);
  const std::int64_t day = DayOfDate(date);
  switch (interval) {
    case Interval::Year:
      return parts.year;
    case Interval::Quarter:
      return (parts.month - 1) / monthsPerQuarter + 1;
    case Interval::Month:
      return parts.month;
    case Interval::DayOfYear:
      return static_cast<int>(day - static_cast<std::int64_t>(DaysOf(parts.year, 1, 1))) + 1;
    case Interval::Day:
      return parts.day;
    case Interval::Weekday:
      return WeekdayOf(day, rule.firstDay);
    case Interval::Week:
      return WeekOfYear(day, parts.year, rule);
    case Interval::Hour:
      return parts.hour;
    case Interval::Minute:
      return parts.minute;
    case Interval::Second:
      return parts.second;
  }
  return 0;
}

}  // namespace

Value DateAdd(LibraryContext& context, Arguments arguments) {
  const IntervalRow& row = IntervalIn(arguments[0]);
  const std::int64_t count = CountOf(arguments[1]);
  if (StandsForNull(arguments[2])) return Value::Null();
  const double date = GivenDate(context, arguments[2]);
  if (row.months > 0) return Value::Date(MonthsLater(date, count * row.months));
  return Value::Date(DateOfSeconds(SecondsOfDate(date) + count * row.seconds));
}

Value DateDiff(LibraryContext& context, Arguments arguments) {
  const IntervalRow& row = IntervalIn(arguments[0]);
  const WeekRule rule = WeekRuleIn(arguments, 3);
  if (StandsForNull(arguments[1]) || StandsForNull(arguments[2])) return Value::Null();
  const std::int64_t crossed =
      Crossed(row, GivenDate(context, arguments[1]), GivenDate(context, arguments[2]), rule);
  if (crossed != static_cast<std::int32_t>(crossed)) throw ScriptError(overflow);
  return Value::Long(static_cast<std::int32_t>(crossed));
}

Value DatePart(LibraryContext& context, Arguments arguments) {
  const IntervalRow& row = IntervalIn(arguments[0]);
  const WeekRule rule = WeekRuleIn(arguments, 2);
  if (StandsForNull(arguments[1])) return Value::Null();
  const int part = PartOf(row.interval, GivenDate(context, arguments[1]), rule);
  return Value::Integer(static_cast<std::int16_t>(part));
}

}  // namespace quarlin::vbs
