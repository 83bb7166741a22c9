// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <chrono>

#include "script/values/conversions.h"
#include "script/values/dispatch.h"
#include "script/values/effort.h"
#include "script/values/locale.h"

namespace quarlin::vbs {
namespace {

// The place of a name in a list, from 1, or 0. The dot of a shortened one is read for itself.
template <std::size_t count>
int PlaceOf(std::u16string_view word, const std::array<std::u16string_view, count>& names) {
  int place = 0;
  for (std::u16string_view name : names) {
    ++place;
    if (name.ends_with(u'.')) name.remove_suffix(1);
    if (SameName(word, name)) return place;
  }
  return 0;
}

int MonthOf(std::u16string_view word, const DateNames& names) {
  for (const auto* list : {&names.months, &names.shortMonths, &names.monthsOfDate}) {
    if (const int month = PlaceOf(word, *list)) return month;
  }
  return 0;
}

bool IsWeekday(std::u16string_view word, const DateNames& names) {
  return PlaceOf(word, names.weekdays) != 0 || PlaceOf(word, names.shortWeekdays) != 0;
}

struct Token {
  enum class Type { End, Number, Word, Symbol } type = Type::End;
  int number = 0;
  std::size_t digits = 0;
  char16_t symbol = 0;
  std::u16string_view word;
};

bool IsHalfOfDay(const Token& token) {
  constexpr auto names = std::to_array<std::u16string_view>({u"AM", u"PM", u"A", u"P"});
  return std::any_of(names.begin(), names.end(),
                     [&](std::u16string_view name) { return SameName(name, token.word); });
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool IsLetter(char16_t unit) {
  constexpr char16_t firstBeyondAscii = 0x00C0;  // "é", "ź"
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit >= firstBeyondAscii;
}

bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t';
}

// Gives one token after the other, and lets the reader see the one behind it.
class Tokens {
 public:
  explicit Tokens(std::u16string_view text) : text_(text), next_(Take()), second_(Take()) {}

  const Token& Next() const { return next_; }
  const Token& Second() const { return second_; }
  Token Pop() {
    const Token taken = next_;
    next_ = second_;
    second_ = Take();
    return taken;
  }

 private:
  Token Take() {
    while (!text_.empty() && IsBlank(text_.front())) text_.remove_prefix(1);
    if (text_.empty()) return {};
    std::size_t length = 0;
    Token token;
    if (IsDigit(text_.front())) {
      token.type = Token::Type::Number;
      constexpr int most = 100'000;  // beyond every number that means something in a date
      for (; length < text_.size() && IsDigit(text_[length]); ++length) {
        token.number = std::min(token.number * 10 + (text_[length] - u'0'), most);
      }
      token.digits = length;
    } else if (IsLetter(text_.front())) {
      token.type = Token::Type::Word;
      while (length < text_.size() && IsLetter(text_[length])) ++length;
      token.word = text_.substr(0, length);
    } else {
      token.type = Token::Type::Symbol;
      token.symbol = text_.front();
      length = 1;
    }
    text_.remove_prefix(length);
    return token;
  }

  std::u16string_view text_;
  Token next_;
  Token second_;
};

// A number within a date.
struct Field {
  int number = 0;
  std::size_t digits = 0;

  bool MustBeYear() const { return digits > 2 || number > 31; }
  int AsYear() const {
    if (digits > 2) return number;
    return number + (number < 30 ? 2000 : 1900);
  }
};

// The day, where the calendar has it.
std::optional<double> DayOf(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  return DaysOf(year, month, day);
}

class DateReader {
 public:
  DateReader(std::u16string_view text, std::optional<int> thisYear, const Locale& locale)
      : tokens_(text), thisYear_(thisYear), locale_(locale) {}

  std::optional<double> Read() {
    while (tokens_.Next().type != Token::Type::End) {
      if (!(TimeBegins() ? ReadTime() : ReadPart())) return std::nullopt;
    }
    EndOrdinal();
    if (separator_ != 0) return std::nullopt;
    if (!HasDate()) return time_;
    const auto day = month_ == 0 ? DayByNumbers() : DayByName();
    if (!day) return std::nullopt;
    const double time = time_.value_or(0);
    return *day < 0 ? *day - time : *day + time;  // the time of day counts away from day 0
  }

 private:
  bool HasDate() const { return count_ != 0 || month_ != 0; }

  bool TimeBegins() const {
    return tokens_.Next().type == Token::Type::Number &&
           (tokens_.Second().symbol == u':' || IsHalfOfDay(tokens_.Second()));
  }

  // A dot behind a number or a name that nothing is joined to: "29.2.", "29. Feb."
  void EndOrdinal() {
    if (separator_ != u'.') return;
    separator_ = 0;
    --joints_;
  }

  bool ReadTime() {
    EndOrdinal();
    if (time_ || (separator_ != 0 && separator_ != u',')) return false;
    separator_ = 0;
    int hour = tokens_.Pop().number;
    const auto minute = ReadSixtieths();
    const auto second = ReadSixtieths();
    if (hour > 23 || !minute || !second) return false;
    if (IsHalfOfDay(tokens_.Next())) {
      const bool afternoon = LowerOf(tokens_.Pop().word.front()) == u'p';
      if (hour > 12 && !afternoon) return false;
      hour = hour % 12 + (afternoon ? 12 : 0);
    }
    time_ = TimeOf(hour, *minute, *second);
    return true;
  }

  // Minutes or seconds with the colon in front of them, 0 where there are none.
  std::optional<int> ReadSixtieths() {
    if (tokens_.Next().symbol != u':') return 0;
    tokens_.Pop();
    const Token token = tokens_.Pop();
    if (token.type != Token::Type::Number || token.number > 59) return std::nullopt;
    return token.number;
  }

  bool ReadPart() {
    const Token token = tokens_.Pop();
    if (token.type == Token::Type::Symbol) return TakeSeparator(token.symbol);
    separator_ = 0;
    if (token.type == Token::Type::Word) return TakeName(token.word);
    if (count_ == fields_.size()) return false;
    fields_[count_++] = {token.number, token.digits};
    return true;
  }

  bool TakeName(std::u16string_view word) {
    // "mar" is a day of the week in front of a date, and a month within it.
    const DateNames& names = *locale_.names;
    const DateNames& usual = *UsualLocale().names;
    if (HasDate() && !names.filler.empty() && SameName(word, names.filler)) return true;
    const int month = MonthOf(word, names) != 0 ? MonthOf(word, names) : MonthOf(word, usual);
    if ((!HasDate() || month == 0) && (IsWeekday(word, names) || IsWeekday(word, usual))) return !HasDate();
    if (month_ != 0) return false;
    month_ = month;
    return month_ != 0;
  }

  bool TakeSeparator(char16_t symbol) {
    const bool joins = locale_.dateSigns.find(symbol) != locale_.dateSigns.npos;
    if (separator_ != 0 || !(joins ? HasDate() : symbol == u',')) return false;
    separator_ = symbol;
    if (joins) ++joints_;
    return true;
  }

  // "15 March 2024", "March 15, 2024", "2024 March 15", "March 2024", "15 March".
  std::optional<double> DayByName() const {
    const auto& [first, second, third] = fields_;
    if (count_ == 2) {
      return first.MustBeYear() ? DayOf(first.AsYear(), month_, second.number)
                                : DayOf(second.AsYear(), month_, first.number);
    }
    if (count_ != 1) return std::nullopt;
    if (first.MustBeYear()) return DayOf(first.AsYear(), month_, 1);
    return thisYear_ ? DayOf(*thisYear_, month_, first.number) : std::nullopt;
  }

  // Two numbers in the locale's order of month and day, or the other way round where that makes no day.
  std::optional<double> DayOfEither(int year, const Field& one, const Field& other) const {
    const Field& month = locale_.monthFirst ? one : other;
    const Field& day = locale_.monthFirst ? other : one;
    const auto usual = DayOf(year, month.number, day.number);
    return usual ? usual : DayOf(year, day.number, month.number);
  }

  std::optional<double> DayBehindYear(const Field& year, const Field& one, const Field& other) const {
    const auto usual = DayOf(year.AsYear(), one.number, other.number);
    return usual ? usual : DayOf(year.AsYear(), other.number, one.number);
  }

  // "3/15/2024", "2024-03-15", "3/2024", "2024/3", "3/15".
  std::optional<double> DayByNumbers() const {
    const auto& [first, second, third] = fields_;
    if (joints_ + 1 != count_) return std::nullopt;
    if (count_ == 3) {
      return first.MustBeYear() ? DayBehindYear(first, second, third)
                                : DayOfEither(third.AsYear(), first, second);
    }
    if (count_ != 2) return std::nullopt;
    if (first.MustBeYear()) return DayOf(first.AsYear(), second.number, 1);
    if (second.MustBeYear()) return DayOf(second.AsYear(), first.number, 1);
    return thisYear_ ? DayOfEither(*thisYear_, first, second) : std::nullopt;
  }

  Tokens tokens_;
  std::optional<int> thisYear_;
  const Locale& locale_;
  std::array<Field, 3> fields_{};
  std::size_t count_ = 0;   // of fields
  std::size_t joints_ = 0;  // "/", "-" and the like between them
  char16_t separator_ = 0;  // the last thing read was this one, so something must follow
  int month_ = 0;           // that was named
  std::optional<double> time_;
};

}  // namespace

std::optional<double> DateOfText(std::u16string_view text, std::optional<int> thisYear) {
  return DateOfText(text, thisYear, CurrentLocale());
}

std::optional<double> DateOfText(std::u16string_view text, std::optional<int> thisYear,
                                 const Locale& locale) {
  effort::Touch(8 * text.size());
  return DateReader(text, thisYear, locale).Read();
}

}  // namespace quarlin::vbs
