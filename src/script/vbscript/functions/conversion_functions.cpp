// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iterator>
#include <string>

#include "script/values/conversions.h"
#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {
namespace {

constexpr char16_t lastByte = 0xFF;
constexpr std::int16_t unknownCharacter = u'?';

Value CBool(LibraryContext&, Arguments arguments) {
  return Value::Bool(ToBool(arguments[0]));
}

Value CByte(LibraryContext&, Arguments arguments) {
  return Value::Byte(ToByte(arguments[0]));
}

Value CCur(LibraryContext&, Arguments arguments) {
  return Value::Currency(ToCurrency(arguments[0]));
}

int ThisYear(const LibraryContext& context) {
  const LocalTime now = context.services.Time().Local();
  return static_cast<int>(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(now)).year());
}

Value CDate(LibraryContext& context, Arguments arguments) {
  const Value plain = Plain(arguments[0]);
  if (plain.IsString()) {
    if (const auto date = DateOfText(plain.AsText(), ThisYear(context))) return Value::Date(*date);
  }
  return Value::Date(ToDate(plain));
}

Value CDbl(LibraryContext&, Arguments arguments) {
  return Value::Double(ToDouble(arguments[0]));
}

Value CInt(LibraryContext&, Arguments arguments) {
  return Value::Integer(ToInteger(arguments[0]));
}

Value CLng(LibraryContext&, Arguments arguments) {
  return Value::Long(ToLong(arguments[0]));
}

Value CSng(LibraryContext&, Arguments arguments) {
  return Value::Single(ToSingle(arguments[0]));
}

Value CStr(LibraryContext&, Arguments arguments) {
  return ToTextValue(arguments[0]);
}

char16_t FirstUnit(const Value& value) {
  std::u16string scratch;
  const std::u16string_view text = ToTextView(value, scratch);
  if (text.empty()) throw ScriptError(invalidCall);
  return text.front();
}

Value Asc(LibraryContext&, Arguments arguments) {
  const char16_t unit = FirstUnit(arguments[0]);
  return Value::Integer(unit > lastByte ? unknownCharacter : static_cast<std::int16_t>(unit));
}

// The first byte that the text has in memory.
Value AscB(LibraryContext&, Arguments arguments) {
  return Value::Integer(static_cast<std::int16_t>(FirstUnit(arguments[0]) & 0xFF));
}

Value AscW(LibraryContext&, Arguments arguments) {
  return Value::Integer(static_cast<std::int16_t>(FirstUnit(arguments[0])));
}

Value CharacterWithin(const Value& code, std::int32_t least, std::int32_t most) {
  const std::int32_t number = ToLong(code);
  if (number < least || number > most) throw ScriptError(invalidCall);
  return Value::Character(static_cast<char16_t>(number));
}

Value Chr(LibraryContext&, Arguments arguments) {
  return CharacterWithin(arguments[0], 0, lastByte);
}

Value ChrW(LibraryContext&, Arguments arguments) {
  return CharacterWithin(arguments[0], -0x8000, 0xFFFF);
}

// The bits of a number as wide as its kind: 16 for what is at most an Integer, 32 for the rest.
std::uint32_t BitsOf(const Value& value) {
  const auto bits = static_cast<std::uint32_t>(ToLong(value));
  return value.GetKind() <= Kind::Integer ? bits & 0xFFFF : bits;
}

Value Digits(const Value& value, int base) {
  Value plain = Plain(value);
  if (plain.IsNull()) return plain;
  std::array<char, 16> digits;
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), BitsOf(plain), base).ptr;
  std::u16string text;
  std::transform(digits.cbegin(), end, std::back_inserter(text),
                 [](char digit) { return UpperOf(static_cast<char16_t>(digit)); });
  return Value::String(text);
}

Value Hex(LibraryContext&, Arguments arguments) {
  return Digits(arguments[0], 16);
}

Value Oct(LibraryContext&, Arguments arguments) {
  return Digits(arguments[0], 8);
}

Value IsNumericFunction(LibraryContext&, Arguments arguments) {
  return Value::Bool(IsNumeric(arguments[0]));
}

Value IsDateFunction(LibraryContext& context, Arguments arguments) {
  const Value& value = arguments[0];
  if (value.IsString()) return Value::Bool(DateOfText(value.AsText(), ThisYear(context)).has_value());
  return Value::Bool(IsDate(value));
}

// An object is asked for the value that it stands for: VarType 0 is Empty, 1 is Null.
Value IsEmptyFunction(LibraryContext&, Arguments arguments) {
  return Value::Bool(VarTypeOf(arguments[0]) == 0);
}

Value IsNullFunction(LibraryContext&, Arguments arguments) {
  return Value::Bool(VarTypeOf(arguments[0]) == 1);
}

Value IsObjectFunction(LibraryContext&, Arguments arguments) {
  return Value::Bool(arguments[0].IsObject());
}

Value TypeNameFunction(LibraryContext&, Arguments arguments) {
  return Value::String(TypeNameOf(arguments[0]));
}

Value VarTypeFunction(LibraryContext&, Arguments arguments) {
  return Value::Integer(static_cast<std::int16_t>(VarTypeOf(arguments[0])));
}

std::int32_t ColourPart(const Value& value) {
  const std::int32_t part = ToLong(value);
  if (part < 0) throw ScriptError(invalidCall);
  return std::min(part, 0xFF);
}

Value Rgb(LibraryContext&, Arguments arguments) {
  return Value::Long(ColourPart(arguments[0]) | (ColourPart(arguments[1]) << 8) |
                     (ColourPart(arguments[2]) << 16));
}

constexpr auto functions = std::to_array<Builtin>({
    {u"Asc", 1, 1, Asc},
    {u"AscB", 1, 1, AscB},
    {u"AscW", 1, 1, AscW},
    {u"CBool", 1, 1, CBool},
    {u"CByte", 1, 1, CByte},
    {u"CCur", 1, 1, CCur},
    {u"CDate", 1, 1, CDate},
    {u"CDbl", 1, 1, CDbl},
    {u"Chr", 1, 1, Chr},
    {u"ChrB", 1, 1, Chr},
    {u"ChrW", 1, 1, ChrW},
    {u"CInt", 1, 1, CInt},
    {u"CLng", 1, 1, CLng},
    {u"CSng", 1, 1, CSng},
    {u"CStr", 1, 1, CStr},
    {u"Hex", 1, 1, Hex},
    {u"IsDate", 1, 1, IsDateFunction},
    {u"IsEmpty", 1, 1, IsEmptyFunction},
    {u"IsNull", 1, 1, IsNullFunction},
    {u"IsNumeric", 1, 1, IsNumericFunction},
    {u"IsObject", 1, 1, IsObjectFunction},
    {u"Oct", 1, 1, Oct},
    {u"RGB", 3, 3, Rgb},
    {u"TypeName", 1, 1, TypeNameFunction},
    {u"VarType", 1, 1, VarTypeFunction},
});

}  // namespace

std::span<const Builtin> ConversionFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
