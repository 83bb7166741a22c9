// SPDX-License-Identifier: GPL-3.0-or-later
// The names of the control characters, as they stand in tables and on the screen.
#pragma once

#include <string>
#include <string_view>

namespace quarlin {

// "NUL" for 0, "CR" for 13, "DEL" for 127; empty for a code that has no name.
std::string_view ControlName(unsigned char code);

// The same for every code: a printable character is its own name, and 32 is "space".
std::string CharacterName(unsigned char code);

// The text with each control character (0-31 and 127-159) as its name, "<CR>", or where it has none as its
// code in hexadecimal, "<9B>".
std::string WithControlNames(std::string_view bytes);

}  // namespace quarlin
