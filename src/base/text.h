// SPDX-License-Identifier: GPL-3.0-or-later
// Byte strings and their two outside forms. In the core one character is one byte, 0-255, and stands
// for the character U+0000-U+00FF on the screen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

// Without the blanks (code 32 only) at both ends; a CR LF survives.
std::string_view TrimBlanks(std::string_view text);

// ASCII letters only; for file names, keywords and look-ups.
std::string ToUpper(std::string_view text);
bool EqualsIgnoringCase(std::string_view left, std::string_view right);

// True when the bytes are well-formed UTF-8 (plain ASCII is).
bool IsUtf8(std::string_view bytes);

// Each byte as the character of its code, and back; a character above U+00FF becomes "?".
std::string Utf8FromBytes(std::string_view bytes);
std::string BytesFromUtf8(std::string_view utf8);

// The text of a table or script file without its byte-order mark: UTF-16, of either order, where there is a
// mark for it; else UTF-8 when all of it is well-formed, else one byte a character.
struct FileText {
  std::string text;     // UTF-16 is UTF-8 here, half of a pair U+FFFD
  bool isUtf8 = false;  // otherwise a byte is a character
};
FileText FileTextOf(std::string_view content);

// That text as a byte string.
std::string BytesFromFileText(std::string_view content);

// The text with every control character as its code in braces, "{0D}", as macros write it; of more than
// `most` bytes the beginning and "...".
std::string CodedText(std::string_view text, std::size_t most);

// Each line end, of one or two characters, becomes one blank.
std::string OnOneLine(std::string_view text);

// Splits at CR LF, LF and CR; the last line needs no end. An empty text has no lines.
std::vector<std::string> SplitLines(std::string_view text);

}  // namespace quarlin
