// SPDX-License-Identifier: GPL-3.0-or-later
// The functions and constants that every script has. Each topic has a table of its own; a row is a name,
// the fewest and most arguments, and a function.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/holders.h"
#include "script/values/locale.h"
#include "script/values/services.h"
#include "script/values/value.h"

namespace quarlin::vbs {

// The generator behind Rnd: 24 bits, so that a sequence of an older program comes out the same.
struct RandomState {
  std::uint32_t seed = 0x50000;
};

// What the functions of one engine share.
struct LibraryContext {
  Services& services;
  RandomState random;
  Holders* holders = nullptr;  // the list for objects that hold values, if the engine keeps one
  LocaleChoice locale = LocaleChoice(services.StartLocale());
};

struct Builtin {
  std::u16string_view name;
  int fewest;
  int most;
  // The arguments are never References, and count as given, so a trailing one may be absent or Missing.
  Value (*function)(LibraryContext& context, Arguments arguments);
};

struct NamedConstant {
  std::u16string_view name;
  Value value;
};

// The topics. Array, IsArray, LBound, UBound, Filter, Join and Split are "array" functions.
std::span<const Builtin> StringFunctions();
std::span<const Builtin> MathFunctions();
std::span<const Builtin> ConversionFunctions();  // CInt, CStr, Hex, IsNumeric, TypeName, VarType, RGB ...
std::span<const Builtin> DateFunctions();
std::span<const Builtin> FormatFunctions();
std::span<const Builtin> ArrayFunctions();
std::span<const Builtin> InteractionFunctions();  // MsgBox, InputBox, CreateObject, ScriptEngine ...
std::span<const NamedConstant> LibraryConstants();

}  // namespace quarlin::vbs
