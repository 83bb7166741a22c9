// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/text.h"

namespace quarlin {
namespace {

// The longest prefix that reads as a decimal number, and how many characters it took.
struct Prefix {
  double value = 0;
  std::size_t length = 0;
};

Prefix NumberPrefix(std::string_view text) {
  std::string_view digits = text;
  if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
  if (digits.empty() || digits.front() == '+' || (digits.size() < text.size() && digits.front() == '-'))
    return {};
  // from_chars also knows "inf" and "nan", which no user means by a number.
  const char afterSign = digits.front() == '-' && digits.size() > 1 ? digits[1] : digits.front();
  if (afterSign != '.' && (afterSign < '0' || afterSign > '9')) return {};
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::invalid_argument) return {};
  if (error == std::errc::result_out_of_range) {
    value = digits.front() == '-' ? -HUGE_VAL : HUGE_VAL;
  }
  return {value, static_cast<std::size_t>(end - text.data())};
}

double RadixValue(std::string_view digits, int radix) {
  std::uint32_t value = 0;
  for (const char c : digits) {
    const int digit = HexDigitValue(c);
    if (digit < 0 || digit >= radix) break;
    value = value * static_cast<std::uint32_t>(radix) + static_cast<std::uint32_t>(digit);
  }
  return static_cast<double>(static_cast<std::int32_t>(value));
}

template <typename Number>
std::string ShortText(Number value, int digits) {
  if (value == 0) return "0";
  const double magnitude = std::floor(std::log10(std::fabs(static_cast<double>(value))));
  if (magnitude >= digits || magnitude < -digits) return fmt::format("{:.{}G}", value, digits);
  const int decimals = std::clamp(digits - 1 - static_cast<int>(magnitude), 0, digits);
  std::string text = fmt::format("{:.{}f}", value, decimals);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

}  // namespace

std::optional<double> NumberOf(std::string_view text) {
  const std::string_view trimmed = TrimBlanks(text);
  const Prefix prefix = NumberPrefix(trimmed);
  if (prefix.length == 0 || prefix.length != trimmed.size()) return std::nullopt;
  return prefix.value;
}

std::int32_t IntegerOf(std::string_view text) {
  std::int32_t whole = 0;  // the ordinary case, without the detour over a floating-point number
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
  if (error == std::errc() && end == text.data() + text.size()) return whole;
  using Limits = std::numeric_limits<std::int32_t>;
  const double rounded = std::nearbyint(NumberOf(text).value_or(0));
  return static_cast<std::int32_t>(std::clamp<double>(rounded, Limits::min(), Limits::max()));
}

double Val(std::string_view text) {
  std::string packed;
  for (const char c : text) {
    if (c != ' ' && c != '\t' && c != '\n') packed += c;
  }
  if (packed.size() > 2 && packed[0] == '&') {
    const char radix = packed[1];
    if (radix == 'H' || radix == 'h') return RadixValue(std::string_view(packed).substr(2), 16);
    if (radix == 'O' || radix == 'o') return RadixValue(std::string_view(packed).substr(2), 8);
  }
  return NumberPrefix(packed).value;
}

std::string PaddedDecimal(std::int64_t value, int digits) {
  char buffer[24];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
  std::string text(buffer, end);
  const std::size_t sign = value < 0 ? 1 : 0;
  const std::size_t wanted = static_cast<std::size_t>(std::max(digits, 0)) + sign;
  if (text.size() < wanted) text.insert(sign, wanted - text.size(), '0');
  return text;
}

std::string Hexadecimal(std::uint32_t value, int digits) {
  return fmt::format("{:0{}X}", value, std::max(digits, 1));
}

std::string BinaryText(std::uint32_t value, int digits) {
  std::string text;
  for (int bit = digits - 1; bit >= 0; --bit) text += (value >> bit) % 2 != 0 ? '1' : '0';
  return text;
}

std::string CharacterOfCode(double code) {
  if (!(code >= 0 && code <= 255)) return {};
  return std::string(1, static_cast<char>(static_cast<unsigned char>(code)));
}

int HexDigitValue(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  return -1;
}

std::string DecimalText(double value) {
  return ShortText(value, 15);
}

std::string DecimalText(float value) {
  return ShortText(value, 7);
}

}  // namespace quarlin
