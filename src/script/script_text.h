// SPDX-License-Identifier: GPL-3.0-or-later
// The border between the core, where a character is a byte, and scripts, where it is a UTF-16 unit:
// byte n is the character U+00nn, and a character above U+00FF becomes "?" on its way back.
#pragma once

#include <string>
#include <string_view>

#include "script/values/value.h"

namespace quarlin {

std::u16string Utf16FromBytes(std::string_view bytes);
std::string BytesFromUtf16(std::u16string_view text);

vbs::Value TextValue(std::string_view bytes);

// Any value by the language's own conversion to text; throws ScriptError where there is none.
std::string BytesOfValue(const vbs::Value& value);

}  // namespace quarlin
