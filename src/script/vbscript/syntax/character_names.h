// SPDX-License-Identifier: GPL-3.0-or-later
// What a character is called that nobody can see, or that looks like another one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quarlin::vbs {

// The character at a place of the text, for a message: "@", "U+2002 EN SPACE", or the number and the
// character where it can be seen.
std::u16string NameOfCharacter(std::u16string_view text, std::size_t offset);

}  // namespace quarlin::vbs
