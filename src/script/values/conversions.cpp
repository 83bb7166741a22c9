// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/conversions.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/enum_table.h"
#include "script/values/date_range.h"
#include "script/values/dispatch.h"
#include "script/values/number_text.h"

namespace quarlin::vbs {
namespace {

constexpr std::int64_t currencyScale = 10'000;
constexpr int longestChain = 100;  // of objects that stand for one another

// A conversion that no value of this kind can take part in.
[[noreturn]] void RaiseNoConversion(const Value& value) {
  throw ScriptError(value.IsNull() ? invalidUseOfNull : typeMismatch);
}

NumberInText NumberFrom(std::u16string_view text) {
  const auto number = ReadNumber(text);
  if (!number) throw ScriptError(typeMismatch);
  if (std::isinf(number->value)) throw ScriptError(overflow);
  return *number;
}

std::int64_t WholeWithin(double value, double least, double most) {
  const double whole = std::nearbyint(value);
  if (!(whole >= least && whole <= most)) throw ScriptError(overflow);
  return static_cast<std::int64_t>(whole);
}

template <class Number>
Number Narrowed(std::int64_t value) {
  if (value < std::numeric_limits<Number>::min() || value > std::numeric_limits<Number>::max()) {
    throw ScriptError(overflow);
  }
  return static_cast<Number>(value);
}

// "&HFFFF" is -1 as an Integer and "&HFFFFFFFF" as a Long: the pattern of bits counts.
template <class Number, class Bits>
Number WholeOfText(std::u16string_view text) {
  const NumberInText number = NumberFrom(text);
  if (number.isBits && number.value <= static_cast<double>(std::numeric_limits<Bits>::max())) {
    return static_cast<Number>(static_cast<Bits>(number.value));
  }
  return Narrowed<Number>(RoundToLong(number.value));
}

std::int32_t LongOfCurrency(std::int64_t tenThousandths) {
  std::int64_t whole = tenThousandths / currencyScale;
  const std::int64_t rest = std::abs(tenThousandths % currencyScale);
  const bool away = rest * 2 > currencyScale || (rest * 2 == currencyScale && whole % 2 != 0);
  if (away) whole += tenThousandths < 0 ? -1 : 1;
  return Narrowed<std::int32_t>(whole);
}

std::int64_t CurrencyOf(double value) {
  // The first Double beyond the range, which is 2 to the power of 63.
  constexpr double end = 9223372036854775808.0;
  const double scaled = std::nearbyint(value * static_cast<double>(currencyScale));
  if (!(scaled >= -end && scaled < end)) throw ScriptError(overflow);
  // Beyond this the product has no room for every ten-thousandth, while whole part and rest have.
  constexpr double exactlyScaled = 1e11;
  if (std::abs(value) < exactlyScaled) return static_cast<std::int64_t>(scaled);
  const double whole = std::trunc(value);
  return static_cast<std::int64_t>(whole) * currencyScale +
         std::llround((value - whole) * static_cast<double>(currencyScale));
}

double CheckedDate(double days) {
  if (!IsInDateRange(days)) throw ScriptError(overflow);
  return days;
}

double DateFromText(std::u16string_view text) {
  if (const auto date = DateOfText(text)) return *date;
  return CheckedDate(NumberFrom(text).value);
}

// The names of truth, which count as numbers nowhere else.
bool BoolOfText(std::u16string_view text) {
  if (SameName(text, u"True") || SameName(text, u"#TRUE#")) return true;
  if (SameName(text, u"False") || SameName(text, u"#FALSE#")) return false;
  return NumberFrom(text).value != 0;
}

std::u16string_view Widened(std::string_view ascii, std::u16string& scratch) {
  scratch.assign(ascii.begin(), ascii.end());
  return scratch;
}

// The default member of an object, where it is a property to be read without arguments; anything else as
// it is. For questions about a value, which no object answers with an error.
Value PlainIfAny(const Value& value) {
  if (!value.IsObject() || value.IsNothing()) return value;
  Dispatch& object = *value.AsObject();
  const bool readable = object.HasDefault() && object.KindOf(Dispatch::defaultMember) == MemberKind::Property;
  return readable ? Plain(value) : value;
}

struct KindName {
  Kind kind;
  int number;
  std::u16string_view name;
};

constexpr auto kindNames = std::to_array<KindName>({{Kind::Empty, 0, u"Empty"},
                                                    {Kind::Null, 1, u"Null"},
                                                    {Kind::Boolean, 11, u"Boolean"},
                                                    {Kind::Byte, 17, u"Byte"},
                                                    {Kind::Integer, 2, u"Integer"},
                                                    {Kind::Long, 3, u"Long"},
                                                    {Kind::Single, 4, u"Single"},
                                                    {Kind::Double, 5, u"Double"},
                                                    {Kind::Currency, 6, u"Currency"},
                                                    {Kind::Date, 7, u"Date"},
                                                    {Kind::Error, 10, u"Error"},
                                                    {Kind::Reference, 0, u""},
                                                    {Kind::String, 8, u"String"},
                                                    {Kind::Array, 8204, u"Variant()"},
                                                    {Kind::Object, 9, u"Object"}});
static_assert(StandInOrder(kindNames, &KindName::kind, Kind::Object));

const KindName& KindNameOf(const Value& value) {
  return kindNames[static_cast<std::size_t>(value.GetKind())];
}

}  // namespace

Value Plain(const Value& value) {
  Value plain = value.Followed();
  for (int steps = 0; plain.IsObject(); ++steps) {
    if (plain.IsNothing()) throw ScriptError(objectNotSet);
    if (steps == longestChain) throw ScriptError(outOfStackSpace);
    plain = plain.AsObject()->Invoke(Dispatch::defaultMember, {});
  }
  return plain;
}

bool ToBool(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
      return false;
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
    case Kind::Currency:
      return value.AsWhole() != 0;
    case Kind::String:
      return BoolOfText(value.AsText());
    case Kind::Object:
    case Kind::Reference:
      return ToBool(Plain(value));
    default:
      return ToDouble(value) != 0;
  }
}

std::uint8_t ToByte(const Value& value) {
  const Value plain = Plain(value);
  if (plain.Is(Kind::Boolean)) return plain.AsBool() ? 0xFF : 0;
  return Narrowed<std::uint8_t>(ToLong(plain));
}

std::int16_t ToInteger(const Value& value) {
  const Value plain = Plain(value);
  if (plain.IsString()) return WholeOfText<std::int16_t, std::uint16_t>(plain.AsText());
  return Narrowed<std::int16_t>(ToLong(plain));
}

std::int32_t ToLong(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
      return 0;
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return static_cast<std::int32_t>(value.AsWhole());
    case Kind::Currency:
      return LongOfCurrency(value.AsWhole());
    case Kind::String:
      return WholeOfText<std::int32_t, std::uint32_t>(value.AsText());
    case Kind::Object:
    case Kind::Reference:
      return ToLong(Plain(value));
    default:
      return RoundToLong(ToDouble(value));
  }
}

float ToSingle(const Value& value) {
  const auto single = static_cast<float>(ToDouble(value));
  if (!std::isfinite(single)) throw ScriptError(overflow);
  return single;
}

double ToDouble(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
      return 0;
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return static_cast<double>(value.AsWhole());
    case Kind::Single:
    case Kind::Double:
    case Kind::Date:
      return value.AsReal();
    case Kind::Currency:
      return static_cast<double>(value.AsWhole()) / static_cast<double>(currencyScale);
    case Kind::String:
      return NumberFrom(value.AsText()).value;
    case Kind::Object:
    case Kind::Reference:
      return ToDouble(Plain(value));
    default:
      RaiseNoConversion(value);
  }
}

std::int64_t ToCurrency(const Value& value) {
  const Value plain = Plain(value);
  switch (plain.GetKind()) {
    case Kind::Currency:
      return plain.AsWhole();
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return plain.AsWhole() * currencyScale;
    default:
      return CurrencyOf(ToDouble(plain));
  }
}

double ToDate(const Value& value) {
  const Value plain = Plain(value);
  if (plain.Is(Kind::Date)) return plain.AsReal();
  return plain.IsString() ? DateFromText(plain.AsText()) : CheckedDate(ToDouble(plain));
}

std::u16string ToText(const Value& value) {
  std::u16string scratch;
  const std::u16string_view text = ToTextView(value, scratch);
  return text.data() == scratch.data() ? std::move(scratch) : std::u16string(text);
}

std::u16string QuotedText(const Value& value) {
  constexpr std::size_t longest = 200;
  const Kind kind = value.Followed().GetKind();
  if (kind == Kind::Null) return u"Null";
  if (kind == Kind::Object || kind == Kind::Array || kind == Kind::Error) return u"...";
  const std::u16string text = ToText(value);
  return text.size() > longest ? text.substr(0, longest) + u"..." : text;
}

std::u16string_view ToTextView(const Value& value, std::u16string& scratch) {
  NumberBuffer buffer;
  switch (value.GetKind()) {
    case Kind::String:
      return value.AsText();
    case Kind::Empty:
      return {};
    case Kind::Boolean:
      return value.AsBool() ? u"True" : u"False";
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
      return Widened(WriteWhole(value.AsWhole(), buffer), scratch);
    case Kind::Single:
      return Widened(WriteReal(value.AsReal(), Precision::Single, buffer), scratch);
    case Kind::Double:
      return Widened(WriteReal(value.AsReal(), Precision::Double, buffer), scratch);
    case Kind::Currency:
      return Widened(WriteCurrency(value.AsWhole(), buffer), scratch);
    case Kind::Date:
      return scratch = TextOfDate(value.AsReal());
    case Kind::Object:
    case Kind::Reference:
      return scratch = ToText(Plain(value));
    default:
      RaiseNoConversion(value);
  }
}

Value ToTextValue(const Value& value) {
  if (value.IsString()) return value;
  if (value.IsObject() || value.Is(Kind::Reference)) return ToTextValue(Plain(value));
  std::u16string scratch;
  return Value::String(ToTextView(value, scratch));
}

Value ToNumber(const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
      return Value::Integer(0);
    case Kind::Boolean:
      return Value::Integer(value.AsBool() ? -1 : 0);
    case Kind::String:
      return Value::Double(ToDouble(value));
    case Kind::Object:
    case Kind::Reference:
      return ToNumber(Plain(value));
    case Kind::Array:
    case Kind::Error:
      throw ScriptError(typeMismatch);
    default:
      return value;
  }
}

std::int32_t RoundToLong(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(WholeWithin(value, Limits::min(), Limits::max()));
}

bool IsNumeric(const Value& value) {
  const Value plain = PlainIfAny(value.Followed());
  switch (plain.GetKind()) {
    case Kind::Null:
    case Kind::Date:
    case Kind::Error:
    case Kind::Array:
    case Kind::Object:
      return false;
    case Kind::String:
      return NumberOfText(plain.AsText()).has_value();
    default:
      return true;
  }
}

bool IsDate(const Value& value) {
  const Value plain = PlainIfAny(value.Followed());
  return plain.Is(Kind::Date) || (plain.IsString() && DateOfText(plain.AsText()));
}

int VarTypeOf(const Value& value) {
  return KindNameOf(PlainIfAny(value.Followed())).number;
}

std::u16string TypeNameOf(const Value& value) {
  const Value& followed = value.Followed();
  if (followed.IsNothing()) return u"Nothing";
  return std::u16string(followed.IsObject() ? followed.AsObject()->TypeName() : KindNameOf(followed).name);
}

}  // namespace quarlin::vbs
