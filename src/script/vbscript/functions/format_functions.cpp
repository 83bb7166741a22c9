// SPDX-License-Identifier: GPL-3.0-or-later
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

#include "script/values/arguments.h"
#include "script/values/date_text.h"
#include "script/vbscript/functions/date_line.h"

namespace quarlin::vbs {
namespace {

// 0.d1d2d3... * 10^point, as the digits that a script gets to see of a number; so 1.005 is what it looks
// like, not the binary fraction just below it, and rounds to 1.01.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;
};

Decimal DecimalOfWhole(std::int64_t value, int places) {
  std::string digits = std::to_string(value);
  if (value < 0) digits.erase(0, 1);
  return {value < 0, digits, static_cast<int>(digits.size()) - places};
}

// `significant` digits: one in front of the point, "1.23456e+02".
Decimal DecimalOfReal(double value, int significant) {
  const std::string text = fmt::format("{:.{}e}", std::abs(value), significant - 1);
  const std::size_t exponent = text.find('e');
  std::string digits = text.substr(0, 1) + text.substr(2, exponent - 2);
  return {value < 0, digits, std::atoi(text.c_str() + exponent + 1) + 1};
}

Decimal DecimalOf(const Value& value) {
  constexpr int currencyPlaces = 4;
  constexpr int singleDigits = 7;
  constexpr int doubleDigits = 15;
  if (value.Is(Kind::Currency)) return DecimalOfWhole(value.AsWhole(), currencyPlaces);
  if (value.Is(Kind::Single)) return DecimalOfReal(value.AsReal(), singleDigits);
  return DecimalOfReal(ToDouble(value), doubleDigits);
}

// One more in the last place; "99" becomes "100" and moves the point.
void CountUp(Decimal& number) {
  auto digit = number.digits.rbegin();
  for (; digit != number.digits.rend() && *digit == '9'; ++digit) *digit = '0';
  if (digit != number.digits.rend()) {
    ++*digit;
    return;
  }
  number.digits.insert(0, 1, '1');
  ++number.point;
}

// Halves go away from zero. What rounds to nothing has no sign.
void RoundTo(Decimal& number, int places) {
  const int kept = number.point + places;
  if (kept < static_cast<int>(number.digits.size())) {
    const bool up = kept >= 0 && number.digits[static_cast<std::size_t>(kept)] >= '5';
    number.digits.resize(static_cast<std::size_t>(std::max(kept, 0)));
    if (up) CountUp(number);
  }
  if (number.digits.find_first_not_of('0') == std::string::npos) number = {false, "", 0};
}

std::string WholePart(const Decimal& number, bool grouped) {
  if (number.point <= 0) return "";
  const auto size = static_cast<std::size_t>(number.point);
  std::string whole = number.digits.substr(0, size);
  whole.resize(size, '0');
  constexpr std::size_t groupSize = 3;
  for (std::size_t place = size; grouped && place > groupSize; place -= groupSize) {
    whole.insert(place - groupSize, 1, ',');
  }
  return whole;
}

std::string Fraction(const Decimal& number, int places) {
  std::string fraction;
  if (number.point < 0) fraction.assign(static_cast<std::size_t>(-number.point), '0');
  const auto from = static_cast<std::size_t>(std::max(number.point, 0));
  if (from < number.digits.size()) fraction += number.digits.substr(from);
  fraction.resize(static_cast<std::size_t>(places), '0');
  return fraction;
}

// What a number looks like where the arguments leave it open; "n" stands for its digits.
struct NumberStyle {
  std::u16string_view positive;
  std::u16string_view negative;
  int shift;  // places that the point moves to the right
  bool parentheses;
};

struct NumberOptions {
  int places;
  bool leadingZero;
  bool parentheses;
  bool grouped;
};

// True (-1), False (0), or as usual (-2).
bool TristateOr(Arguments arguments, std::size_t index, bool usual) {
  constexpr std::int32_t asUsual = -2;
  const std::int32_t choice = ChoiceOr(arguments, index, asUsual, asUsual, 0);
  return choice == asUsual ? usual : choice != 0;
}

NumberOptions OptionsIn(Arguments arguments, const NumberStyle& style) {
  constexpr std::int32_t usualPlaces = 2;
  constexpr std::int32_t mostPlaces = 255;
  const std::int32_t places = ChoiceOr(arguments, 1, -1, -1, mostPlaces);
  return {places < 0 ? usualPlaces : places, TristateOr(arguments, 2, true),
          TristateOr(arguments, 3, style.parentheses), TristateOr(arguments, 4, true)};
}

// A field that was left empty is no number here: error 13, not that of Null.
Value Formattable(const Value& value) {
  Value plain = Plain(value);
  if (plain.IsNull()) throw ScriptError(typeMismatch);
  return plain;
}

// The digits with the signs of the locale, put into a pattern.
std::u16string Filled(std::u16string_view pattern, std::string_view digits, const Locale& locale) {
  std::u16string text;
  for (const char16_t unit : pattern) {
    if (unit != u'n') {
      text += unit;
      continue;
    }
    for (const char digit : digits) {
      text += digit == '.'   ? static_cast<char16_t>(locale.decimal)
              : digit == ',' ? locale.thousands
                             : static_cast<char16_t>(digit);
    }
  }
  return text;
}

Value Format(const LibraryContext& context, Arguments arguments, const NumberStyle& style) {
  const NumberOptions options = OptionsIn(arguments, style);
  Decimal number = DecimalOf(Formattable(arguments[0]));
  number.point += style.shift;
  RoundTo(number, options.places);

  std::string digits = WholePart(number, options.grouped);
  if (digits.empty() && (options.leadingZero || options.places == 0)) digits = "0";
  if (options.places > 0) digits += "." + Fraction(number, options.places);
  const bool signedPattern = number.negative && !options.parentheses;
  std::u16string text =
      Filled(signedPattern ? style.negative : style.positive, digits, context.locale.Chosen());
  if (number.negative && options.parentheses) text = u"(" + text + u")";
  return Value::String(text);
}

Value FormatNumber(LibraryContext& context, Arguments arguments) {
  return Format(context, arguments, {u"n", u"-n", 0, false});
}

Value FormatCurrency(LibraryContext& context, Arguments arguments) {
  const Locale& locale = context.locale.Chosen();
  return Format(context, arguments, {locale.money, locale.debt, 0, locale.debtInBrackets});
}

Value FormatPercent(LibraryContext& context, Arguments arguments) {
  return Format(context, arguments, {u"n%", u"-n%", 2, false});
}

Value FormatDateTime(LibraryContext& context, Arguments arguments) {
  constexpr auto last = static_cast<std::int32_t>(DateForm::ShortTime);
  const auto form = static_cast<DateForm>(ChoiceOr(arguments, 1, 0, 0, last));
  const double date = GivenDate(context, Formattable(arguments[0]));
  return Value::String(TextOfDate(date, form, context.locale.Chosen()));
}

constexpr auto functions = std::to_array<Builtin>({
    {u"FormatCurrency", 1, 5, FormatCurrency},
    {u"FormatDateTime", 1, 2, FormatDateTime},
    {u"FormatNumber", 1, 5, FormatNumber},
    {u"FormatPercent", 1, 5, FormatPercent},
});

}  // namespace

std::span<const Builtin> FormatFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
