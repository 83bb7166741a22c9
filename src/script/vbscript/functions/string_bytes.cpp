// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string_view>

#include "script/values/arguments.h"
#include "script/vbscript/functions/string_library.h"
#include "script/vbscript/functions/text_of_units.h"
#include "script/vbscript/functions/text_search.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t bytesInUnit = 2;
constexpr unsigned bitsInByte = 8;

unsigned ByteAt(std::u16string_view text, std::size_t place) {
  const unsigned unit = text[place / bytesInUnit];
  return place % bytesInUnit == 0 ? unit & 0xFFU : unit >> bitsInByte;
}

// `count` bytes from `from` on, fewer where the text ends.
Value BytesAsText(LibraryContext& context, std::u16string_view text, std::size_t from, std::size_t count) {
  const std::size_t size = text.size() * bytesInUnit;
  const std::size_t end = from + std::min(count, size - from);
  return TextOfUnits(context.services, (end - from + 1) / bytesInUnit, [=](std::size_t place) {
    const std::size_t low = from + place * bytesInUnit;
    const unsigned high = low + 1 < end ? ByteAt(text, low + 1) : 0;
    return static_cast<char16_t>(ByteAt(text, low) | high << bitsInByte);
  });
}

std::size_t ByteCount(const Value& value) {
  const std::int32_t count = CountOf(value);
  if (count < 0) throw ScriptError(invalidCall);
  return static_cast<std::size_t>(count);
}

}  // namespace

Value LenB(LibraryContext&, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  return Value::Long(static_cast<std::int32_t>(text.View().size() * bytesInUnit));
}

Value LeftB(LibraryContext& context, Arguments arguments) {
  const std::size_t count = ByteCount(arguments[1]);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  return BytesAsText(context, text.View(), 0, count);
}

Value RightB(LibraryContext& context, Arguments arguments) {
  const std::size_t count = ByteCount(arguments[1]);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::size_t size = text.View().size() * bytesInUnit;
  return BytesAsText(context, text.View(), size - std::min(count, size), count);
}

Value MidB(LibraryContext& context, Arguments arguments) {
  const std::int32_t start = CountOf(arguments[1]);
  const Value* given = Given(arguments, 2);
  const std::size_t count = given == nullptr ? longestText * bytesInUnit : ByteCount(*given);
  if (start < 1) throw ScriptError(invalidCall);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::size_t size = text.View().size() * bytesInUnit;
  return BytesAsText(context, text.View(), std::min(static_cast<std::size_t>(start) - 1, size), count);
}

Value InStrB(LibraryContext& context, Arguments arguments) {
  const std::size_t texts = arguments.size() > 2 ? 1 : 0;
  const std::int32_t start = texts == 0 ? 1 : CountOr(arguments, 0, 1);
  const bool ignoreCase = IgnoresCase(arguments, 3);
  if (start < 1) throw ScriptError(invalidCall);
  const GivenText where(arguments[texts]);
  const GivenText what(arguments[texts + 1]);
  if (where.IsNull() || what.IsNull()) return Value::Null();
  const auto from = static_cast<std::size_t>(start) - 1;
  if (from >= where.View().size() * bytesInUnit) return Value::Long(0);
  if (what.View().empty()) return Value::Long(start);
  const std::size_t found = FindBytes(where.View(), what.View(), from, ignoreCase, context.services);
  return Value::Long(found == SoughtText::nowhere ? 0 : static_cast<std::int32_t>(found) + 1);
}

}  // namespace quarlin::vbs
