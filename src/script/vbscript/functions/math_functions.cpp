// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "base/clock.h"
#include "script/values/arguments.h"
#include "script/values/conversions.h"
#include "script/values/operators.h"
#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {
namespace {

constexpr std::int64_t currencyScale = 10'000;
constexpr int currencyPlaces = 4;
constexpr std::int32_t mostPlaces = 22;  // the largest power of ten that a Double holds exactly

bool IsWhole(const Value& value) {
  return value.GetKind() >= Kind::Byte && value.GetKind() <= Kind::Long;
}

// A result in the kind of the argument, which is a Single, a Double or a Date.
Value InKindOf(const Value& argument, double value) {
  if (argument.Is(Kind::Single)) return Value::Single(static_cast<float>(value));
  return argument.Is(Kind::Date) ? Value::Date(value) : Value::Double(value);
}

Value Finite(double value) {
  if (!std::isfinite(value)) throw ScriptError(overflow);
  return Value::Double(value);
}

Value Abs(LibraryContext&, Arguments arguments) {
  Value number = ToNumber(arguments[0]);
  if (number.IsNull()) return number;
  const bool scaled = IsWhole(number) || number.Is(Kind::Currency);
  return (scaled ? number.AsWhole() < 0 : number.AsReal() < 0) ? Negate(number) : number;
}

Value Sgn(LibraryContext&, Arguments arguments) {
  const double number = ToDouble(arguments[0]);
  return Value::Integer(static_cast<std::int16_t>((number > 0) - (number < 0)));
}

Value Int(LibraryContext&, Arguments arguments) {
  Value number = ToNumber(arguments[0]);
  if (number.IsNull() || IsWhole(number)) return number;
  if (!number.Is(Kind::Currency)) return InKindOf(number, std::floor(number.AsReal()));
  const std::int64_t rest = number.AsWhole() % currencyScale;
  return Value::Currency(number.AsWhole() - rest - (rest < 0 ? currencyScale : 0));
}

Value Fix(LibraryContext&, Arguments arguments) {
  Value number = ToNumber(arguments[0]);
  if (number.IsNull() || IsWhole(number)) return number;
  if (!number.Is(Kind::Currency)) return InKindOf(number, std::trunc(number.AsReal()));
  return Value::Currency(number.AsWhole() - number.AsWhole() % currencyScale);
}

std::int64_t RoundedCurrency(std::int64_t tenThousandths, std::int32_t places) {
  std::int64_t unit = 1;
  for (int place = currencyPlaces; place > places; --place) unit *= 10;
  const std::int64_t rest = tenThousandths % unit;
  const std::int64_t size = std::abs(rest);
  std::int64_t units = tenThousandths / unit;
  if (size * 2 > unit || (size * 2 == unit && units % 2 != 0)) units += rest < 0 ? -1 : 1;
  std::int64_t rounded = 0;
  if (__builtin_mul_overflow(units, unit, &rounded)) throw ScriptError(overflow);
  return rounded;
}

double RoundedReal(double value, std::int32_t places) {
  const double scale = std::pow(10.0, places);
  const double scaled = value * scale;
  constexpr double firstWithoutFraction = 4503599627370496.0;  // 2 to the power of 52
  if (!(std::abs(scaled) < firstWithoutFraction)) return value;
  return std::nearbyint(scaled) / scale;
}

Value Round(LibraryContext&, Arguments arguments) {
  const Value* given = Given(arguments, 1);
  const std::int32_t places = given == nullptr ? 0 : ToLong(*given);
  if (places < 0 || places > mostPlaces) throw ScriptError(invalidCall);
  Value number = ToNumber(arguments[0]);
  if (number.IsNull() || IsWhole(number)) return number;
  if (number.Is(Kind::Currency)) return Value::Currency(RoundedCurrency(number.AsWhole(), places));
  return InKindOf(number, RoundedReal(number.AsReal(), places));
}

Value Atn(LibraryContext&, Arguments arguments) {
  return Value::Double(std::atan(ToDouble(arguments[0])));
}

Value Cos(LibraryContext&, Arguments arguments) {
  return Value::Double(std::cos(ToDouble(arguments[0])));
}

Value Sin(LibraryContext&, Arguments arguments) {
  return Value::Double(std::sin(ToDouble(arguments[0])));
}

Value Tan(LibraryContext&, Arguments arguments) {
  return Finite(std::tan(ToDouble(arguments[0])));
}

Value Exp(LibraryContext&, Arguments arguments) {
  return Finite(std::exp(ToDouble(arguments[0])));
}

Value Log(LibraryContext&, Arguments arguments) {
  const double number = ToDouble(arguments[0]);
  if (number <= 0) throw ScriptError(invalidCall);
  return Value::Double(std::log(number));
}

Value Sqr(LibraryContext&, Arguments arguments) {
  const double number = ToDouble(arguments[0]);
  if (number < 0) throw ScriptError(invalidCall);
  return Value::Double(std::sqrt(number));
}

constexpr std::uint32_t seedMask = 0xFF'FFFF;

std::uint32_t NextSeed(std::uint32_t seed) {
  constexpr std::uint32_t factor = 0x43FD'43FD;
  constexpr std::uint32_t offset = 0xC3'9EC3;
  return (seed * factor + offset) & seedMask;
}

std::uint32_t SeedOf(float number) {
  const auto bits = std::bit_cast<std::uint32_t>(number);
  return (bits + (bits >> 24)) & seedMask;
}

Value Rnd(LibraryContext& context, Arguments arguments) {
  const Value* given = Given(arguments, 0);
  const float number = given == nullptr ? 1.0F : ToSingle(*given);
  std::uint32_t& seed = context.random.seed;
  if (number < 0) seed = SeedOf(number);
  if (number != 0) seed = NextSeed(seed);
  return Value::Single(static_cast<float>(seed) / static_cast<float>(seedMask + 1));
}

// Folds 32 bits into the two upper bytes of the seed; the lowest byte stays what it was.
Value Randomize(LibraryContext& context, Arguments arguments) {
  const Value* given = Given(arguments, 0);
  const auto bits = given == nullptr
                        ? std::bit_cast<std::uint32_t>(
                              static_cast<float>(SecondsSinceMidnight(context.services.Time().Local())))
                        : static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(ToDouble(*given)) >> 32);
  const std::uint32_t folded = ((bits >> 16) ^ bits) & 0xFFFF;
  std::uint32_t& seed = context.random.seed;
  seed = (seed & 0xFF) | (folded << 8);
  return {};
}

constexpr auto functions = std::to_array<Builtin>({
    {u"Abs", 1, 1, Abs},
    {u"Atn", 1, 1, Atn},
    {u"Cos", 1, 1, Cos},
    {u"Exp", 1, 1, Exp},
    {u"Fix", 1, 1, Fix},
    {u"Int", 1, 1, Int},
    {u"Log", 1, 1, Log},
    {u"Randomize", 0, 1, Randomize},
    {u"Rnd", 0, 1, Rnd},
    {u"Round", 1, 2, Round},
    {u"Sgn", 1, 1, Sgn},
    {u"Sin", 1, 1, Sin},
    {u"Sqr", 1, 1, Sqr},
    {u"Tan", 1, 1, Tan},
});

}  // namespace

std::span<const Builtin> MathFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
