// SPDX-License-Identifier: GPL-3.0-or-later
// Bytes of the wire in files for people and machines.
#pragma once

#include <string>
#include <string_view>

namespace quarlin {

// With each control character (0-31 and 127-159) as "\x0D". A backslash stays a backslash: who needs the
// exact bytes takes HexText. Still one character a byte.
std::string WithoutControls(std::string_view bytes);

// The same as UTF-8.
std::string VisibleText(std::string_view bytes);

// The same, but tabulators, line feeds and carriage returns stay themselves; for texts of several lines.
std::string VisibleLines(std::string_view bytes);

// "52 45 41 44"
std::string HexText(std::string_view bytes);

}  // namespace quarlin
