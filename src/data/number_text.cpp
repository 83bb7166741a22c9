// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/number_text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace quarlin {
namespace {

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool IsHexDigit(char character) {
  return IsDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

constexpr std::string_view typesetMinus = "\xE2\x88\x92";

// How many bytes in front of `place` are one sign; 0: none.
std::size_t SignBefore(std::string_view text, std::size_t place) {
  if (place > 0 && (text[place - 1] == '+' || text[place - 1] == '-')) return 1;
  return text.substr(0, place).ends_with(typesetMinus) ? typesetMinus.size() : 0;
}

// Letters, "%", and what is beyond ASCII, as the degree and the micro sign are.
bool BeginsUnit(char character) {
  return IsLetter(character) || character == '%' || static_cast<unsigned char>(character) >= 0x80;
}

bool EndsUnit(char character) {
  return static_cast<unsigned char>(character) <= ' ' ||
         std::string_view(",;\"'()[]{}<>=").find(character) != std::string_view::npos;
}

bool IsSumDigit(char character) {
  return IsDigit(character) || (character >= 'A' && character <= 'F');
}

// A checksum often stands right behind the unit, "kg476B": 2, 4 or 8 capital hexadecimal digits. Two
// letters may be the unit's own, as in "VDC".
std::string_view WithoutChecksum(std::string_view unit) {
  const auto last = std::find_if_not(unit.rbegin(), unit.rend(), IsSumDigit);
  const auto run = static_cast<std::size_t>(last - unit.rbegin());
  for (const std::size_t length : {std::size_t{8}, std::size_t{4}, std::size_t{2}}) {
    if (run < length || unit.size() == length) continue;
    const std::string_view sum = unit.substr(unit.size() - length);
    return length > 2 || std::ranges::any_of(sum, IsDigit) ? unit.substr(0, unit.size() - length) : unit;
  }
  return unit;
}

std::string_view UnitIn(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.empty() || !BeginsUnit(text.front()) || text.starts_with(typesetMinus)) return {};
  return WithoutChecksum(text.substr(
      0, static_cast<std::size_t>(std::find_if(text.begin(), text.end(), EndsUnit) - text.begin())));
}

// The end of an exponent that begins at `place`; `place` where there is none.
std::size_t ExponentEnd(std::string_view text, std::size_t place) {
  std::size_t end = place;
  if (end == text.size() || (text[end] != 'e' && text[end] != 'E')) return place;
  ++end;
  if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
  const std::size_t digits = end;
  while (end < text.size() && IsDigit(text[end])) ++end;
  return end > digits ? end : place;
}

// `digits` with a point as the only sign. What is too small for a double is 0.
std::optional<double> ValueOf(std::string_view digits) {
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc()) return value;
  return digits.find_first_of("eE") != std::string_view::npos && digits.find('-') != std::string_view::npos
             ? std::optional(0.0)
             : std::nullopt;
}

// "1.234.567,8" as "1234567.8".
std::string WithPointOnly(std::string_view digits, char decimal) {
  std::string plain;
  for (const char character : digits) {
    if (character == decimal) {
      plain += '.';
    } else if (character != '.' && character != ',') {
      plain += character;
    }
  }
  return plain;
}

}  // namespace

// A run of digits with signs between them, and one point that may stand in front or behind.
struct NumberScanner::Digits {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t signs = 0;
  std::size_t firstSign = 0;  // where they stand
  std::size_t lastSign = 0;

  // What a sign does in it.
  struct Use {
    bool isNumber = false;
    char decimal = 0;
    char thousands = 0;
    bool guessed = false;
  };
  static Digits Of(std::string_view text, std::size_t begin, std::size_t end, DecimalSign sign);
  Use UseOf(std::string_view text, DecimalSign sign) const;
  bool InThousands(std::string_view text, std::size_t stop) const;
  Use LoneSign(std::string_view text, DecimalSign sign) const;
  bool MayBeThousands(std::string_view text) const { return InThousands(text, end); }
};

// The signs in the run; a point directly behind it belongs to it, "12.", where it may be a decimal one.
NumberScanner::Digits NumberScanner::Digits::Of(std::string_view text, std::size_t begin, std::size_t end,
                                                DecimalSign sign) {
  Digits digits{begin, end};
  for (std::size_t place = begin; place < end; ++place) {
    if (IsDigit(text[place])) continue;
    if (digits.signs++ == 0) digits.firstSign = place;
    digits.lastSign = place;
  }
  if (digits.signs == 0 && end < text.size() && text[end] == '.' && sign != DecimalSign::Comma) {
    digits = {begin, end + 1, 1, end, end};
  }
  return digits;
}

// One to three digits, not beginning with 0, and threes behind, all with the same sign, up to `stop`.
bool NumberScanner::Digits::InThousands(std::string_view text, std::size_t stop) const {
  if (firstSign == begin || firstSign - begin > 3 || text[begin] == '0') return false;
  for (std::size_t place = firstSign; place < stop; place += 4) {
    if (text[place] != text[firstSign]) return false;
    const auto group = text.substr(place + 1, std::min<std::size_t>(3, stop - place - 1));
    if (group.size() < 3 || !std::all_of(group.begin(), group.end(), IsDigit)) return false;
  }
  return true;
}

NumberScanner::Digits::Use NumberScanner::Digits::LoneSign(std::string_view text, DecimalSign sign) const {
  const char found = text[lastSign];
  const DecimalSign own = found == '.' ? DecimalSign::Point : DecimalSign::Comma;
  if (sign == own) return {true, found, 0, false};
  if (sign == DecimalSign::Either) return {true, found, 0, MayBeThousands(text)};
  return {MayBeThousands(text), 0, found, false};
}

NumberScanner::Digits::Use NumberScanner::Digits::UseOf(std::string_view text, DecimalSign sign) const {
  if (signs == 0) return {true, 0, 0, false};
  if (signs == 1) return LoneSign(text, sign);
  const char first = text[firstSign];
  const char last = text[lastSign];
  const DecimalSign decimal = last == '.' ? DecimalSign::Point : DecimalSign::Comma;
  if (first == last) return {sign != decimal && MayBeThousands(text), 0, first, false};
  const bool fits = sign == DecimalSign::Either || sign == decimal;
  return {fits && InThousands(text, lastSign), last, first, false};
}

// Where the number whose digits begin at `place` begins with its sign. Several signs in a row are none: rows
// of dashes stand for a value that is missing.
std::size_t NumberScanner::Sign(std::size_t place) const {
  std::size_t end = place;
  while (end > 0 && text_[end - 1] == ' ') --end;
  const std::size_t length = SignBefore(text_, end);
  if (length == 0 || SignBefore(text_, end - length) > 0) return place;
  return end - length;
}

// "0x1F" and "&H1F", with all letters and digits behind.
bool NumberScanner::SkipHexadecimal() {
  const auto is = [this](std::size_t place, char lower) {
    return place < text_.size() && (text_[place] | 0x20) == lower;
  };
  const bool prefixed =
      text_[at_] == '0' && is(at_ + 1, 'x') && at_ + 2 < text_.size() && IsHexDigit(text_[at_ + 2]);
  const bool marked = at_ >= 2 && text_[at_ - 2] == '&' && is(at_ - 1, 'h');
  if (!prefixed && !marked) return false;
  while (at_ < text_.size() && (IsDigit(text_[at_]) || IsLetter(text_[at_]))) ++at_;
  return true;
}

bool NumberScanner::IsDigitAt(std::size_t place) const {
  return place < text_.size() && IsDigit(text_[place]);
}

// To the next digits, or the point in front of them; false at the end of the text.
bool NumberScanner::ToDigits() {
  for (; at_ < text_.size(); ++at_) {
    if (IsDigitAt(at_)) {
      if (!SkipHexadecimal()) return true;
      --at_;
    } else if (text_[at_] == '.' && IsDigitAt(at_ + 1)) {
      if (at_ == 0 || (!IsLetter(text_[at_ - 1]) && !IsDigit(text_[at_ - 1]))) return true;
    }
  }
  return false;
}

// The end of the digits at `at_` with the signs between them; within a list it ends at the comma.
std::size_t NumberScanner::RunEnd() const {
  const auto separates = [this](std::size_t place) { return text_[place] == ',' && place < listEnd_; };
  std::size_t end = at_ + 1;
  while (IsDigitAt(end) ||
         (IsDigitAt(end + 1) && (text_[end] == '.' || text_[end] == ',') && !separates(end))) {
    ++end;
  }
  return end;
}

std::optional<ReadNumber> NumberScanner::NumberIn(std::size_t end) {
  const Digits digits = Digits::Of(text_, at_, end, sign_);
  const Digits::Use use = digits.UseOf(text_, sign_);
  if (!use.isNumber) return std::nullopt;
  const std::size_t stop = ExponentEnd(text_, digits.end);
  const auto written = text_.substr(at_, stop - at_);
  const bool plain = digits.signs == 0 || (digits.signs == 1 && use.decimal == '.');
  const auto value = plain ? ValueOf(written) : ValueOf(WithPointOnly(written, use.decimal));
  begin_ = Sign(at_);
  const bool negative = begin_ < at_ && text_[begin_] != '+';
  at_ = stop;
  if (!value) return std::nullopt;
  return ReadNumber{negative ? -*value : *value, UnitIn(text_.substr(at_)), use.decimal, use.thousands,
                    use.guessed};
}

std::optional<ReadNumber> NumberScanner::Next() {
  while (ToDigits()) {
    const std::size_t begin = at_;
    const std::size_t end = RunEnd();
    if (const auto number = NumberIn(end)) return number;
    if (at_ != begin) continue;  // one that is too large
    const bool hasComma = text_.substr(at_, end - at_).find(',') != std::string_view::npos;
    if (hasComma && sign_ != DecimalSign::Comma) {
      listEnd_ = end;  // once more, as a list
    } else {
      at_ = end;
    }
  }
  return std::nullopt;
}

std::optional<ReadNumber> LeadingNumber(std::string_view text, DecimalSign sign) {
  NumberScanner numbers(text, sign);
  const auto number = numbers.Next();
  if (!number || numbers.Begin() > text.find_first_not_of(" \t")) return std::nullopt;
  return number;
}

}  // namespace quarlin
