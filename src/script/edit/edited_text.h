// SPDX-License-Identifier: GPL-3.0-or-later
// The text of a script file for an editor, and the way back: in the encoding in which it was read, byte for
// byte where nothing was changed.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

enum class TextEncoding { Utf8, MarkedUtf8, Latin1, Utf16LittleEndian, Utf16BigEndian };

struct EditedText {
  std::string utf8;  // without a byte-order mark; the line ends are those of the file
  TextEncoding encoding = TextEncoding::Utf8;
  std::string_view lineEnd = "\n";  // of its first line, for those that are added
};

// As the program reads a script. Nothing where the file could not be written again as it is: it holds a NUL,
// or half of a pair of UTF-16.
std::optional<EditedText> EditedTextOf(std::string_view content);

// What the file will hold. Nothing where the encoding has no way to write a character of the text.
std::optional<std::string> FileContentOf(std::string_view utf8, TextEncoding encoding);

// "UTF-8", "Latin-1" and so on, for a status bar.
std::string_view EncodingName(TextEncoding encoding);

}  // namespace quarlin
