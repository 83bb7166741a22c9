// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>

#include "script/values/arguments.h"
#include "script/values/operators.h"
#include "script/vbscript/functions/string_library.h"
#include "script/vbscript/functions/text_of_units.h"

namespace quarlin::vbs {
namespace {

constexpr char16_t blank = u' ';

std::size_t LengthFrom(const Value& value) {
  const std::int32_t length = CountOf(value);
  if (length < 0) throw ScriptError(invalidCall);
  return static_cast<std::size_t>(length);
}

Value Left(LibraryContext&, Arguments arguments) {
  const std::size_t length = LengthFrom(arguments[1]);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  return text.Part(0, std::min(length, text.View().size()));
}

Value Right(LibraryContext&, Arguments arguments) {
  const std::size_t wanted = LengthFrom(arguments[1]);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::size_t length = std::min(wanted, text.View().size());
  return text.Part(text.View().size() - length, length);
}

Value Mid(LibraryContext&, Arguments arguments) {
  const std::int32_t start = CountOf(arguments[1]);
  const Value* given = Given(arguments, 2);
  const std::size_t length = given == nullptr ? longestText : LengthFrom(*given);
  if (start < 1) throw ScriptError(invalidCall);
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::size_t size = text.View().size();
  const std::size_t from = std::min(static_cast<std::size_t>(start) - 1, size);
  return text.Part(from, std::min(length, size - from));
}

Value Len(LibraryContext&, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  return Value::Long(static_cast<std::int32_t>(text.View().size()));
}

// A text that has no letter to change is handed back as it is.
template <char16_t (*changed)(char16_t)>
Value InCase(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::u16string_view units = text.View();
  Pace pace(context.services);
  std::size_t same = 0;
  for (std::u16string_view rest = units; !rest.empty(); rest = units.substr(same)) {
    const std::u16string_view piece = rest.substr(0, Pace::piece);
    const auto stays = [](char16_t unit) { return changed(unit) == unit; };
    const auto first = std::find_if_not(piece.begin(), piece.end(), stays);
    same += static_cast<std::size_t>(first - piece.begin());
    if (first != piece.end()) break;
    pace.Done(piece.size());
  }
  if (same == units.size()) return text.Part(0, same);
  return TextOfUnits(context.services, units.size(),
                     [=](std::size_t place) { return changed(units[place]); });
}

// Blanks only: a CR LF or a tab at the end of an answer is part of it.
enum class Ends { Left, Right, Both };

template <Ends ends>
Value Trimmed(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  if (text.IsNull()) return Value::Null();
  const std::u16string_view units = text.View();
  std::size_t from = 0;
  std::size_t end = units.size();
  if (ends != Ends::Right) from = std::min(units.find_first_not_of(blank), end);
  if (ends != Ends::Left) {
    while (end > from && units[end - 1] == blank) --end;
  }
  Pace(context.services).Done(units.size() - (end - from));
  return text.Part(from, end - from);
}

Value Space(LibraryContext& context, Arguments arguments) {
  return TextOfUnits(context.services, LengthFrom(arguments[0]), [](std::size_t) { return blank; });
}

// The character is the first of a text, or the code of one modulo 256.
Value String(LibraryContext& context, Arguments arguments) {
  const std::size_t length = LengthFrom(arguments[0]);
  const Value character = Plain(arguments[1]);
  if (character.IsNull()) return Value::Null();
  char16_t unit = 0;
  if (character.IsString()) {
    if (character.AsText().empty()) throw ScriptError(invalidCall);
    unit = character.AsText().front();
  } else {
    unit = static_cast<char16_t>(static_cast<std::uint32_t>(CountOf(character)) & 0xFFU);
  }
  return TextOfUnits(context.services, length, [unit](std::size_t) { return unit; });
}

int CompareInPieces(LibraryContext& context, std::u16string_view left, std::u16string_view right,
                    bool ignoreCase) {
  Pace pace(context.services);
  for (;;) {
    const std::size_t piece = std::min({left.size(), right.size(), Pace::piece});
    const bool last = piece < Pace::piece;
    const int order = last ? CompareText(left, right, ignoreCase)
                           : CompareText(left.substr(0, piece), right.substr(0, piece), ignoreCase);
    if (last || order != 0) return order;
    left.remove_prefix(piece);
    right.remove_prefix(piece);
    pace.Done(piece);
  }
}

Value StrComp(LibraryContext& context, Arguments arguments) {
  const bool ignoreCase = IgnoresCase(arguments, 2);
  const GivenText left(arguments[0]);
  const GivenText right(arguments[1]);
  if (left.IsNull() || right.IsNull()) return Value::Null();
  const int order = CompareInPieces(context, left.View(), right.View(), ignoreCase);
  return Value::Integer(static_cast<std::int16_t>((order > 0) - (order < 0)));
}

Value StrReverse(LibraryContext& context, Arguments arguments) {
  const GivenText text(arguments[0]);
  const std::u16string_view units = text.View();
  return TextOfUnits(context.services, units.size(),
                     [=](std::size_t place) { return units[units.size() - 1 - place]; });
}

constexpr auto functions = std::to_array<Builtin>({
    {u"Escape", 1, 1, Escape},
    {u"InStr", 2, 4, InStr},
    {u"InStrB", 2, 4, InStrB},
    {u"InStrRev", 2, 4, InStrRev},
    {u"LCase", 1, 1, InCase<LowerOf>},
    {u"Left", 2, 2, Left},
    {u"LeftB", 2, 2, LeftB},
    {u"Len", 1, 1, Len},
    {u"LenB", 1, 1, LenB},
    {u"LTrim", 1, 1, Trimmed<Ends::Left>},
    {u"Mid", 2, 3, Mid},
    {u"MidB", 2, 3, MidB},
    {u"Replace", 3, 6, Replace},
    {u"Right", 2, 2, Right},
    {u"RightB", 2, 2, RightB},
    {u"RTrim", 1, 1, Trimmed<Ends::Right>},
    {u"Space", 1, 1, Space},
    {u"StrComp", 2, 3, StrComp},
    {u"String", 2, 2, String},
    {u"StrReverse", 1, 1, StrReverse},
    {u"Trim", 1, 1, Trimmed<Ends::Both>},
    {u"UCase", 1, 1, InCase<UpperOf>},
    {u"Unescape", 1, 1, Unescape},
});

}  // namespace

std::span<const Builtin> StringFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
