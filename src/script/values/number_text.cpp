// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "script/values/conversions.h"
#include "script/values/effort.h"
#include "script/values/locale.h"

namespace quarlin::vbs {
namespace {

constexpr std::int64_t currencyScale = 10'000;
constexpr int currencyPlaces = 4;
constexpr auto powersOfTen = std::to_array<double>(
    {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15});
constexpr std::size_t mostExactDigits = 15;  // a Double holds every whole number of so many digits

bool IsBlank(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

std::u16string_view WithoutBlanks(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

// The forms that are met all the time: a minus sign perhaps, and up to 15 digits with or without a point.
// Both halves of the division are exact, so its result is the nearest Double.
std::optional<double> ReadPlain(std::u16string_view text) {
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative) text.remove_prefix(1);
  const auto decimal = static_cast<char16_t>(CurrentLocale().decimal);
  std::int64_t digits = 0;
  std::size_t point = text.size();
  for (std::size_t place = 0; place < text.size(); ++place) {
    if (IsDigit(text[place])) {
      digits = digits * 10 + (text[place] - u'0');
    } else if (text[place] == decimal && point == text.size()) {
      point = place;
    } else {
      return std::nullopt;
    }
    if (place > mostExactDigits) return std::nullopt;
  }
  const bool hasPoint = point < text.size();
  const std::size_t count = text.size() - (hasPoint ? 1 : 0);
  if (count == 0 || count > mostExactDigits) return std::nullopt;
  double value = static_cast<double>(digits);
  if (hasPoint) value /= powersOfTen[text.size() - point - 1];
  return negative ? -value : value;
}

// Every other form of a number. What stands around the digits may come in any order, each thing once.
class NumberReader {
 public:
  explicit NumberReader(std::u16string_view text) : text_(text) {}

  std::optional<NumberInText> Read() {
    if (Peek() == u'&') return ReadBits();
    if (!ReadAround(u'(') || !ReadDigits() || !ReadAround(u')')) return std::nullopt;
    if (!text_.empty() || open_ != closed_) return std::nullopt;
    const double value = Converted();
    return NumberInText{negative_ || open_ ? -value : value};
  }

 private:
  char16_t Peek(std::size_t ahead = 0) const { return ahead < text_.size() ? text_[ahead] : u'\0'; }

  // Signs, a currency sign, blanks and the given parenthesis; false when one comes twice.
  bool ReadAround(char16_t parenthesis) {
    for (; !text_.empty(); text_.remove_prefix(1)) {
      const char16_t unit = text_.front();
      if (IsDigit(unit)) return true;
      if (IsBlank(unit) || IsBlankSeparator(unit)) continue;
      bool* seen = nullptr;
      if (unit == u'+' || unit == u'-') seen = &signed_;
      const bool isCurrency = text_.starts_with(locale_.currency);
      if (isCurrency) seen = &currency_;
      if (unit == parenthesis) seen = parenthesis == u'(' ? &open_ : &closed_;
      if (seen == nullptr) return true;
      if (*seen) return false;
      *seen = true;
      negative_ = negative_ || unit == u'-';
      if (isCurrency) text_.remove_prefix(locale_.currency.size() - 1);
    }
    return true;
  }

  // Between groups of digits many write a plain blank, or a narrow one, for the one that does not break.
  bool IsBlankSeparator(char16_t unit) const {
    constexpr char16_t narrowNoBreakSpace = 0x202F;
    return locale_.thousands == noBreakSpace && (unit == noBreakSpace || unit == narrowNoBreakSpace);
  }

  bool SeparatesThousands(char16_t unit) const {
    if (locale_.thousands != noBreakSpace) return unit == locale_.thousands;
    return (unit == u' ' || IsBlankSeparator(unit)) && IsDigit(Peek(1));
  }

  bool ReadDigits() {
    const auto decimal = static_cast<char16_t>(locale_.decimal);
    bool point = false;
    bool digit = false;
    for (; !text_.empty(); text_.remove_prefix(1)) {
      const char16_t unit = text_.front();
      if (IsDigit(unit)) {
        digit = true;
        digits_ += static_cast<char>(unit);
      } else if (unit == decimal && !point) {
        point = true;
        digits_ += '.';
      } else if (!digit || point || !SeparatesThousands(unit)) {
        break;
      }
    }
    if (digit) ReadExponent();
    return digit;
  }

  // An E without digits is left for the caller to stumble over.
  void ReadExponent() {
    const char16_t letter = LowerOf(Peek());
    if (letter != u'e' && letter != u'd') return;
    const bool hasSign = Peek(1) == u'-' || Peek(1) == u'+';
    if (!IsDigit(Peek(hasSign ? 2 : 1))) return;
    digits_ += 'e';
    shrinks_ = Peek(1) == u'-';
    if (shrinks_) digits_ += '-';
    text_.remove_prefix(hasSign ? 2 : 1);
    for (; IsDigit(Peek()); text_.remove_prefix(1)) digits_ += static_cast<char>(text_.front());
    hasExponent_ = true;
  }

  double Converted() const {
    double value = 0;
    const auto read = std::from_chars(digits_.data(), digits_.data() + digits_.size(), value);
    if (read.ec == std::errc()) return value;
    const bool isTiny = hasExponent_ ? shrinks_ : digits_.front() == '0' || digits_.front() == '.';
    return isTiny ? 0 : std::numeric_limits<double>::infinity();
  }

  // "&HFF", "&O17" and "&17", perhaps with "&" at the end.
  std::optional<NumberInText> ReadBits() {
    text_.remove_prefix(1);
    const bool hexadecimal = LowerOf(Peek()) == u'h';
    if (hexadecimal || LowerOf(Peek()) == u'o') text_.remove_prefix(1);
    if (text_.size() > 1 && text_.back() == u'&') text_.remove_suffix(1);
    std::string digits;
    for (const char16_t unit : text_) digits += unit < 0x80 ? static_cast<char>(unit) : '?';
    std::uint64_t bits = 0;
    const char* end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, bits, hexadecimal ? 16 : 8);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return NumberInText{static_cast<double>(bits), true};
  }

  const Locale& locale_ = CurrentLocale();
  std::u16string_view text_;  // what is left
  std::string digits_;        // with a point
  bool signed_ = false;
  bool negative_ = false;
  bool currency_ = false;
  bool open_ = false;
  bool closed_ = false;
  bool hasExponent_ = false;
  bool shrinks_ = false;
};

std::string_view Written(const NumberBuffer& buffer, const char* end) {
  return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

// The digits of a number as scientific notation has them: 0.00125 is "125", exponent -3.
struct Digits {
  std::array<char, 16> characters{};
  int count = 0;
  int exponent = 0;
  bool negative = false;
};

Digits DigitsOf(double value, int precision) {
  std::array<char, 40> scientific;
  const char* end = std::to_chars(scientific.data(), scientific.data() + scientific.size(), std::abs(value),
                                  std::chars_format::scientific, precision - 1)
                        .ptr;
  Digits digits;
  digits.negative = std::signbit(value);
  const char* letter = std::find(scientific.cbegin(), end, 'e');
  for (const char* from = scientific.data(); from != letter; ++from) {
    if (*from != '.') digits.characters[static_cast<std::size_t>(digits.count++)] = *from;
  }
  while (digits.count > 1 && digits.characters[static_cast<std::size_t>(digits.count) - 1] == '0') {
    --digits.count;
  }
  const char* exponent = letter + (letter[1] == '+' ? 2 : 1);
  std::from_chars(exponent, end, digits.exponent);
  return digits;
}

char* PutScientific(const Digits& digits, char decimal, char* out) {
  *out++ = digits.characters[0];
  if (digits.count > 1) *out++ = decimal;
  out = std::copy(digits.characters.begin() + 1, digits.characters.begin() + digits.count, out);
  const int exponent = std::abs(digits.exponent);
  *out++ = 'E';
  *out++ = digits.exponent < 0 ? '-' : '+';
  if (exponent < 10) *out++ = '0';
  constexpr int longest = 3;
  return std::to_chars(out, out + longest, exponent).ptr;
}

char* PutPlain(const Digits& digits, char decimal, char* out) {
  const char* from = digits.characters.data();
  const char* end = from + digits.count;
  if (digits.exponent < 0) {
    *out++ = '0';
    *out++ = decimal;
    out = std::fill_n(out, -digits.exponent - 1, '0');
    return std::copy(from, end, out);
  }
  const int whole = digits.exponent + 1;
  const int given = std::min(whole, digits.count);
  out = std::copy(from, from + given, out);
  out = std::fill_n(out, whole - given, '0');
  if (given == digits.count) return out;
  *out++ = decimal;
  return std::copy(from + given, end, out);
}

std::string_view WriteInfinite(double value) {
  if (std::isnan(value)) return "-1.#IND";
  return value < 0 ? "-1.#INF" : "1.#INF";
}

}  // namespace

std::optional<NumberInText> ReadNumber(std::u16string_view text) {
  text = WithoutBlanks(text);
  if (const auto plain = ReadPlain(text)) return NumberInText{*plain};
  return NumberReader(text).Read();
}

std::u16string TextOfDouble(double value) {
  NumberBuffer buffer;
  const std::string_view text = WriteReal(value, Precision::Double, buffer);
  return {text.begin(), text.end()};
}

std::optional<double> NumberOfText(std::u16string_view text) {
  effort::Touch(8 * text.size());
  const auto number = ReadNumber(text);
  if (!number || std::isinf(number->value)) return std::nullopt;
  return number->value;
}

std::string_view WriteWhole(std::int64_t value, NumberBuffer& buffer) {
  return Written(buffer, std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr);
}

std::string_view WriteCurrency(std::int64_t tenThousandths, NumberBuffer& buffer) {
  char* out = buffer.data();
  if (tenThousandths < 0) *out++ = '-';
  const std::int64_t whole = std::abs(tenThousandths / currencyScale);
  out = std::to_chars(out, buffer.data() + buffer.size(), whole).ptr;
  std::int64_t fraction = std::abs(tenThousandths % currencyScale);
  if (fraction == 0) return Written(buffer, out);
  int places = currencyPlaces;
  for (; fraction % 10 == 0; fraction /= 10) --places;
  *out = CurrentLocale().decimal;
  for (int place = places; place > 0; --place, fraction /= 10) {
    out[place] = static_cast<char>('0' + fraction % 10);
  }
  return Written(buffer, out + 1 + places);
}

std::string_view WriteReal(double value, Precision precision, NumberBuffer& buffer) {
  const int most = static_cast<int>(precision);
  const double magnitude = std::abs(value);
  if (magnitude < powersOfTen[static_cast<std::size_t>(most)] && value == std::trunc(value)) {
    return WriteWhole(static_cast<std::int64_t>(value), buffer);
  }
  if (precision == Precision::Double && magnitude < 1e11) {
    // Where up to four places give the very same Double they are its text.
    const double scaled = std::nearbyint(value * static_cast<double>(currencyScale));
    if (scaled / static_cast<double>(currencyScale) == value) {
      return WriteCurrency(static_cast<std::int64_t>(scaled), buffer);
    }
  }
  if (!std::isfinite(value)) return WriteInfinite(value);
  const Digits digits = DigitsOf(value, most);
  char* out = buffer.data();
  if (digits.negative) *out++ = '-';
  const bool tooLarge = digits.exponent >= most;
  const bool tooManyPlaces = digits.exponent < 0 && digits.count - 1 - digits.exponent > most;
  const char decimal = CurrentLocale().decimal;
  return Written(buffer, tooLarge || tooManyPlaces ? PutScientific(digits, decimal, out)
                                                   : PutPlain(digits, decimal, out));
}

}  // namespace quarlin::vbs
