// SPDX-License-Identifier: GPL-3.0-or-later
// Dates as whole seconds and days on a straight line. A date's own number bends at day 0: its fraction
// counts forward on both sides, so that -1.25 is six o'clock on the day before day 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {

inline constexpr std::int64_t secondsPerMinute = 60;
inline constexpr std::int64_t secondsPerHour = 3600;
inline constexpr std::int64_t secondsPerDay = 86400;

// Rounds down, also below 0.
std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor);

// Seconds since day 0 began, rounded.
std::int64_t SecondsOfDate(double date);

// The date of that number of seconds. Error 5 outside of the years 100 to 9999.
double DateOfSeconds(std::int64_t seconds);

std::int64_t DayOfDate(double date);

// 1 to 7, counted from `firstDay` (1 Sunday to 7 Saturday).
int WeekdayOf(std::int64_t day, int firstDay);

// The local time in whole seconds since day 0.
std::int64_t SecondsNow(const LibraryContext& context);

// A text as a date, in the present year where it names none ("15 Mar"); nothing where it is none.
std::optional<double> DateOfGivenText(const LibraryContext& context, std::u16string_view text);

// ToDate, but a text may leave the year out.
double GivenDate(const LibraryContext& context, const Value& value);

// The optional argument that tells with which day a week begins. Sunday where it is left out, the locale's
// where it is 0; error 5 outside of 0 to 7.
int FirstDayOfWeek(Arguments arguments, std::size_t index);

// The functions that take the name of an interval, in date_intervals.cpp.
Value DateAdd(LibraryContext& context, Arguments arguments);
Value DateDiff(LibraryContext& context, Arguments arguments);
Value DatePart(LibraryContext& context, Arguments arguments);

}  // namespace quarlin::vbs
