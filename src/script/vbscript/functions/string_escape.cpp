// SPDX-License-Identifier: GPL-3.0-or-later
#include <iterator>
#include <optional>

#include "script/values/arguments.h"
#include "script/vbscript/functions/string_library.h"
#include "script/vbscript/functions/text_of_units.h"

namespace quarlin::vbs {
namespace {

// A unit as "%" and two digits, or as "%u" and four.
constexpr std::size_t shortDigits = 2;
constexpr std::size_t longDigits = 4;
constexpr char16_t firstLongUnit = 0x100;
constexpr std::size_t longestEscape = 2 + longDigits;

bool StaysAsItIs(char16_t unit) {
  const bool isDigit = unit >= u'0' && unit <= u'9';
  const bool isLetter = (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
  constexpr std::u16string_view others = u"@*_+-./";
  return isDigit || isLetter || others.find(unit) != std::u16string_view::npos;
}

void AppendEscaped(Value& text, char16_t unit) {
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  const auto digit = [&](unsigned place) { return digits[(unsigned{unit} >> (4 * place)) & 0xFU]; };
  if (unit < firstLongUnit) {
    const char16_t escaped[] = {u'%', digit(1), digit(0)};
    text.AppendText({escaped, std::size(escaped)});
  } else {
    const char16_t escaped[] = {u'%', u'u', digit(3), digit(2), digit(1), digit(0)};
    text.AppendText({escaped, std::size(escaped)});
  }
}

std::optional<unsigned> DigitOf(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10U;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
  return std::nullopt;
}

// The number that `text` begins with, in exactly `count` digits of base 16.
std::optional<char16_t> NumberIn(std::u16string_view text, std::size_t count) {
  if (text.size() < count) return std::nullopt;
  unsigned number = 0;
  for (const char16_t unit : text.substr(0, count)) {
    const auto digit = DigitOf(unit);
    if (!digit) return std::nullopt;
    number = number * 16 + *digit;
  }
  return static_cast<char16_t>(number);
}

struct Escaped {
  char16_t unit;
  std::size_t length;
};

// The escape that `text` begins with, if it does; what only looks like one stays as it is.
std::optional<Escaped> EscapeIn(std::u16string_view text) {
  if (!text.starts_with(u'%')) return std::nullopt;
  if (text.starts_with(u"%u")) {
    if (const auto unit = NumberIn(text.substr(2), longDigits)) return Escaped{*unit, longestEscape};
  }
  if (const auto unit = NumberIn(text.substr(1), shortDigits)) return Escaped{*unit, 1 + shortDigits};
  return std::nullopt;
}

}  // namespace

Value Escape(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  Value result = RoomForText(text.View().size());
  Pace pace(context.services);
  for (const char16_t& unit : text.View()) {
    pace.Done(1);
    if (StaysAsItIs(unit)) {
      result.AppendText({&unit, 1});
    } else {
      AppendEscaped(result, unit);
    }
  }
  return result;
}

Value Unescape(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  std::u16string_view rest = text.View();
  Value result = RoomForText(rest.size());
  Pace pace(context.services);
  while (!rest.empty()) {
    pace.Done(1);
    const Escaped next = EscapeIn(rest).value_or(Escaped{rest.front(), 1});
    result.AppendText({&next.unit, 1});
    rest.remove_prefix(next.length);
  }
  return result;
}

}  // namespace quarlin::vbs
