// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/syntax/literals.h"

#include <charconv>
#include <limits>
#include <string>

namespace quarlin::vbs {
namespace {

// At most this many decimal digits fit into 64 bits without a look at them.
constexpr std::size_t safeDigits = 18;

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// "&HFF", "&O17" and "&17".
std::optional<Value> Based(std::string_view text) {
  const bool isLong = text.back() == '&';
  if (isLong) text.remove_suffix(1);
  const int base = (text[1] | 0x20) == 'h' ? 16 : 8;
  text.remove_prefix(IsDigit(text[1]) ? 1 : 2);
  std::uint32_t bits = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), bits, base);
  if (read.ec != std::errc()) return std::nullopt;
  if (!isLong && bits <= std::numeric_limits<std::uint16_t>::max()) {
    return Value::Integer(static_cast<std::int16_t>(bits));
  }
  return Value::Long(static_cast<std::int32_t>(bits));
}

// Too small to be told from zero, rather than too large.
bool IsTiny(std::string_view text) {
  const std::size_t exponent = text.find_first_of("eE");
  if (exponent == text.npos) return text.front() == '0' || text.front() == '.';
  return text[exponent + 1] == '-';
}

std::optional<Value> Real(std::string_view text) {
  double number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec == std::errc()) return Value::Double(number);
  return IsTiny(text) ? std::optional(Value::Double(0)) : std::nullopt;
}

}  // namespace

std::optional<Value> NumberLiteral(std::u16string_view text) {
  std::string digits;
  for (const char16_t unit : text) digits.push_back(static_cast<char>(unit));
  if (digits.front() == '&') return Based(digits);
  const bool isWhole = digits.find_first_not_of("0123456789") == digits.npos;
  if (!isWhole || digits.size() > safeDigits) return Real(digits);
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return Value::Whole(number);
}

Value TextLiteral(std::u16string_view text) {
  std::size_t quote = text.find(u'"');
  if (quote == text.npos) return Value::String(text);
  std::u16string plain;
  while (quote != text.npos) {
    plain += text.substr(0, quote + 1);
    text.remove_prefix(quote + 2);
    quote = text.find(u'"');
  }
  plain += text;
  return Value::String(plain);
}

}  // namespace quarlin::vbs
