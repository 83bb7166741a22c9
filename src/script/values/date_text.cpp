// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/date_text.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

std::size_t WeekdayFromSunday(const DateParts& parts) {
  using namespace std::chrono;
  const year_month_day date(year(parts.year), month(static_cast<unsigned>(parts.month)),
                            day(static_cast<unsigned>(parts.day)));
  return weekday(sys_days(date)).c_encoding();
}

// Up to four digits.
void PutNumber(std::u16string& text, int number, std::size_t leastDigits) {
  constexpr std::size_t most = 4;
  std::array<char16_t, most> digits;
  std::size_t count = 0;
  for (; count < leastDigits || number != 0; number /= 10) {
    digits[most - ++count] = static_cast<char16_t>(u'0' + number % 10);
  }
  text.append(digits.end() - count, digits.end());
}

// A run of one letter; false when it stands for nothing.
bool PutField(std::u16string& text, char16_t letter, std::size_t count, const DateParts& parts,
              const DateNames& names) {
  constexpr int noon = 12;
  constexpr std::size_t byName = 4;
  switch (letter) {
    case u'd':
      if (count == byName) {
        text += names.weekdays[WeekdayFromSunday(parts)];
      } else {
        PutNumber(text, parts.day, count);
      }
      return true;
    case u'M':
      if (count == byName) {
        text += names.monthsOfDate[static_cast<std::size_t>(parts.month) - 1];
      } else {
        PutNumber(text, parts.month, count);
      }
      return true;
    case u'y':
      PutNumber(text, parts.year, 1);
      return true;
    case u'H':
      PutNumber(text, parts.hour, count);
      return true;
    case u'h':
      PutNumber(text, parts.hour % noon == 0 ? noon : parts.hour % noon, count);
      return true;
    case u'm':
      PutNumber(text, parts.minute, count);
      return true;
    case u's':
      PutNumber(text, parts.second, count);
      return true;
    case u't':
      text += parts.hour < noon ? u"AM" : u"PM";
      return true;
    default:
      return false;
  }
}

void Put(std::u16string& text, std::u16string_view pattern, const DateParts& parts, const DateNames& names) {
  while (!pattern.empty()) {
    const char16_t letter = pattern.front();
    if (letter == u'\'') {
      const std::size_t end = pattern.find(letter, 1);
      text += pattern.substr(1, end - 1);
      pattern.remove_prefix(end + 1);
      continue;
    }
    const std::size_t count = std::min(pattern.find_first_not_of(letter), pattern.size());
    if (!PutField(text, letter, count, parts, names)) text.append(count, letter);
    pattern.remove_prefix(count);
  }
}

void PutGeneral(std::u16string& text, const DateParts& parts, const Locale& locale) {
  const bool midnight = parts.hour == 0 && parts.minute == 0 && parts.second == 0;
  const bool dayZero = parts.year == 1899 && parts.month == 12 && parts.day == 30;
  if (!dayZero) Put(text, locale.shortDate, parts, *locale.names);
  if (!midnight && !dayZero) text += u' ';
  if (!midnight || dayZero) Put(text, locale.longTime, parts, *locale.names);
}

std::u16string_view PatternOf(DateForm form, const Locale& locale) {
  switch (form) {
    case DateForm::LongDate:
      return locale.longDate;
    case DateForm::ShortDate:
      return locale.shortDate;
    case DateForm::LongTime:
      return locale.longTime;
    default:
      return u"HH:mm";
  }
}

}  // namespace

std::u16string TextOfDate(double days, DateForm form, const Locale& locale) {
  const DateParts parts = PartsOfDate(days);
  constexpr std::size_t usualLength = 40;
  std::u16string text;
  text.reserve(usualLength);
  if (form == DateForm::General) {
    PutGeneral(text, parts, locale);
  } else {
    Put(text, PatternOf(form, locale), parts, *locale.names);
  }
  return text;
}

std::u16string TextOfDate(double days) {
  return TextOfDate(days, DateForm::General, CurrentLocale());
}

}  // namespace quarlin::vbs
