// SPDX-License-Identifier: GPL-3.0-or-later
// What a bad instrument makes of an answer. Each change is a real one: something else stands there
// afterwards. A text that is too short for a change stays as it is, and the call returns false.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "faults/chance.h"

namespace quarlin {

// Any one character becomes another that can be printed, and none of `never`.
bool Garble(std::string& text, std::string_view never, Chance& chance);

// The last one to three characters go, but `least` are left.
bool Truncate(std::string& text, std::size_t least, Chance& chance);

// The last `length` characters are a checksum: a single one becomes another character that can be printed; of
// several, which are hexadecimal digits, one becomes another digit, in their case.
bool SpoilChecksum(std::string& text, std::size_t length, Chance& chance);

}  // namespace quarlin
