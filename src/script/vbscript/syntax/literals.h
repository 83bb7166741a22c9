// SPDX-License-Identifier: GPL-3.0-or-later
// What the constants in a script's text are worth.
#pragma once

#include <optional>
#include <string_view>

#include "script/values/value.h"

namespace quarlin::vbs {

// Decimal numbers have the smallest of Integer, Long and Double; &H, &O and & alone, which is octal, wrap
// around within the smallest that has the bits, so &HFFFF is -1, and a trailing & makes a Long. Nothing
// beyond the range of a Double or of 32 bits.
std::optional<Value> NumberLiteral(std::u16string_view text);

// Between its quotes; a quote inside stands there twice.
Value TextLiteral(std::u16string_view text);

}  // namespace quarlin::vbs
