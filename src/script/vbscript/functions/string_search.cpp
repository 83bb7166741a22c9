// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <optional>

#include "script/values/arguments.h"
#include "script/vbscript/functions/string_library.h"
#include "script/vbscript/functions/text_of_units.h"
#include "script/vbscript/functions/text_search.h"

namespace quarlin::vbs {
namespace {

Value PlaceValue(std::size_t place) {
  return Value::Long(place == SoughtText::nowhere ? 0 : static_cast<std::int32_t>(place) + 1);
}

// An optional count of which -1 stands for "all", as it does when the count is left out.
std::optional<std::size_t> CountUnlessAll(Arguments arguments, std::size_t index) {
  constexpr std::int32_t all = -1;
  const std::int32_t count = CountOr(arguments, index, all);
  if (count < all) throw ScriptError(invalidCall);
  if (count == all) return std::nullopt;
  return static_cast<std::size_t>(count);
}

}  // namespace

// With three arguments or more the first is the start.
Value InStr(LibraryContext& context, Arguments arguments) {
  const std::size_t texts = arguments.size() > 2 ? 1 : 0;
  const std::int32_t start = texts == 0 ? 1 : CountOr(arguments, 0, 1);
  const bool ignoreCase = IgnoresCase(arguments, 3);
  if (start < 1) throw ScriptError(invalidCall);
  const GivenText where(arguments[texts]);
  const GivenText what(arguments[texts + 1]);
  if (where.IsNull() || what.IsNull()) return Value::Null();
  const auto from = static_cast<std::size_t>(start) - 1;
  if (from >= where.View().size()) return Value::Long(0);
  return PlaceValue(SoughtText(what.View(), ignoreCase, context.services).FindIn(where.View(), from));
}

// What is found must end at the start or before it.
Value InStrRev(LibraryContext& context, Arguments arguments) {
  constexpr std::int32_t atTheEnd = -1;
  const GivenText where(arguments[0]);
  const GivenText what(arguments[1]);
  const std::int32_t start = CountOr(arguments, 2, atTheEnd);
  const bool ignoreCase = IgnoresCase(arguments, 3);
  if (start < 1 && start != atTheEnd) throw ScriptError(invalidCall);
  const std::u16string_view text = where.View();
  SoughtText sought(what.View(), ignoreCase, context.services);
  const std::size_t end = start == atTheEnd ? text.size() : static_cast<std::size_t>(start);
  if (text.empty() || end > text.size()) return Value::Long(0);
  if (sought.Size() == 0) return Value::Long(static_cast<std::int32_t>(end));
  return PlaceValue(sought.FindLastIn(text.substr(0, end)));
}

// What stands before the start is dropped from the result.
Value Replace(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  const GivenText what(arguments[1]);
  const GivenText with(arguments[2]);
  const std::int32_t start = CountOr(arguments, 3, 1);
  const auto count = CountUnlessAll(arguments, 4);
  SoughtText sought(what.View(), IgnoresCase(arguments, 5), context.services);
  const std::u16string_view replacement = with.View();
  if (start < 1) throw ScriptError(invalidCall);

  const std::u16string_view where = text.View();
  const std::size_t first = std::min(static_cast<std::size_t>(start) - 1, where.size());
  std::size_t found = sought.Size() == 0 || count == 0 ? SoughtText::nowhere : sought.FindIn(where, first);
  if (found == SoughtText::nowhere) return text.Part(first, where.size() - first);

  Value result = RoomForText(where.size() - first);
  std::size_t copied = first;
  for (std::size_t left = count.value_or(where.size()); left > 0 && found != SoughtText::nowhere; --left) {
    result.AppendText(where.substr(copied, found - copied));
    result.AppendText(replacement);
    copied = found + sought.Size();
    found = sought.FindIn(where, copied);
  }
  result.AppendText(where.substr(copied));
  return result;
}

}  // namespace quarlin::vbs
