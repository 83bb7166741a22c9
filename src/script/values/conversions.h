// SPDX-License-Identifier: GPL-3.0-or-later
// From one kind of value to another, by the rules of the language, with numbers
// and dates in the way of the current locale. An object stands for
// its default member. Failures are errors 13 (no such conversion), 6 (out of range) and 94 (Null).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "script/values/value.h"

namespace quarlin::vbs {

struct Locale;

// The value that an object stands for in an expression: its default member, read. Anything else as it is.
// 91 for Nothing, 438 for an object without a default member.
Value Plain(const Value& value);

bool ToBool(const Value& value);
std::uint8_t ToByte(const Value& value);
std::int16_t ToInteger(const Value& value);  // halves to even, as in the next
std::int32_t ToLong(const Value& value);
float ToSingle(const Value& value);
double ToDouble(const Value& value);
std::int64_t ToCurrency(const Value& value);  // ten-thousandths
double ToDate(const Value& value);
std::u16string ToText(const Value& value);

// As an error quotes it: not longer than a line or two, and "..." where there is no text.
std::u16string QuotedText(const Value& value);

// The text of a value without a copy where it has one already: keep `scratch` alive beside the view.
std::u16string_view ToTextView(const Value& value, std::u16string& scratch);

// As ToText, as a value; a String is shared.
Value ToTextValue(const Value& value);

// The number that a value counts as: a text becomes a Double, Boolean and Empty an Integer. Numbers, dates
// and Null stay as they are.
Value ToNumber(const Value& value);

// Halves to even; error 6 beyond 32 bits.
std::int32_t RoundToLong(double value);

// A text as a number: blanks around it, a sign in front or behind, the locale's thousands separators and
// currency sign, "(5)" for -5, an exponent, &H and &O. Nothing where it is no number, also for "".
std::optional<double> NumberOfText(std::u16string_view text);

// Dates as engineers write them in the locale's order (in en-us "3/15/2024 10:20:30 PM", "2024-03-15", "15
// March 2024", "10:20"), or nothing. "3/15" and "15 Mar" are dates only where the present year is told. The
// names of months and days may be English everywhere.
std::optional<double> DateOfText(std::u16string_view text, std::optional<int> thisYear = {});
std::optional<double> DateOfText(std::u16string_view text, std::optional<int> thisYear, const Locale& locale);

// 15 significant digits, scientific from 1E+15 up and where a fraction would need more places.
std::u16string TextOfDouble(double value);

// In en-us "3/15/2024 10:20:30 PM"; no time at midnight, no date on day 0.
std::u16string TextOfDate(double days);

bool IsNumeric(const Value& value);
bool IsDate(const Value& value);

// VarType's number and TypeName's word.
int VarTypeOf(const Value& value);
std::u16string TypeNameOf(const Value& value);

// A date and time taken apart. Year 100 to 9999, month and day from 1; the time is rounded to seconds.
struct DateParts {
  int year = 1899;
  int month = 12;
  int day = 30;
  int hour = 0;
  int minute = 0;
  int second = 0;
};
DateParts PartsOfDate(double days);

// Rolls over: month 13 is January of the next year, day 0 the last of the month before. Error 5 outside
// the years 100 to 9999.
double DaysOf(int year, int month, int day);
double TimeOf(int hour, int minute, int second);

// Upper or lower case as Unicode has it, one code unit for one.
char16_t UpperOf(char16_t unit);
char16_t LowerOf(char16_t unit);

// UTF-8 and back; a half of a surrogate pair becomes U+FFFD.
std::string Utf8Of(std::u16string_view text);
std::u16string Utf16Of(std::string_view utf8);

}  // namespace quarlin::vbs
