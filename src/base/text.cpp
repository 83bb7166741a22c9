// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/numbers.h"

namespace quarlin {
namespace {

char UpperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// How many bytes the sequence that `lead` begins has, or 0 when no sequence begins so.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

// The character at the start of `text` and its length; length 0 when it is malformed.
struct Decoded {
  std::uint32_t code = 0;
  std::size_t length = 0;
};

Decoded Decode(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = SequenceLength(lead);
  if (length == 0 || length > text.size()) return {};
  if (length == 1) return {lead, 1};
  std::uint32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80) return {};
    code = (code << 6) | (next & 0x3FU);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool outside = (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
  if (overlong || outside) return {};
  return {code, length};
}

void AppendUtf8(std::string& utf8, std::uint32_t code) {
  if (code < 0x80) {
    utf8 += static_cast<char>(code);
    return;
  }
  const int followers = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const std::uint32_t lead = 0xFF00U >> (followers + 1);  // as many ones in front as there are bytes
  utf8 += static_cast<char>((lead & 0xFFU) | (code >> (6 * followers)));
  for (int i = followers - 1; i >= 0; --i) utf8 += static_cast<char>(0x80U | ((code >> (6 * i)) & 0x3FU));
}

// Of UTF-16 whose units have their high byte first or second; half a unit at the end is dropped.
std::string Utf8FromUnits(std::string_view bytes, std::size_t highByte) {
  constexpr std::uint32_t replacement = 0xFFFD;
  std::string utf8;
  std::uint32_t high = 0;  // the first half of a pair, or none
  for (; bytes.size() >= 2; bytes.remove_prefix(2)) {
    const auto unit = static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[highByte]) << 8 |
                                                 static_cast<unsigned char>(bytes[1 - highByte]));
    const bool isHigh = (unit & 0xFC00U) == 0xD800;
    const bool isLow = (unit & 0xFC00U) == 0xDC00;
    if (high != 0 && !isLow) AppendUtf8(utf8, replacement);
    if (isLow) {
      AppendUtf8(utf8, high == 0 ? replacement : 0x10000 + ((high & 0x3FFU) << 10) + (unit & 0x3FFU));
    } else if (!isHigh) {
      AppendUtf8(utf8, unit);
    }
    high = isHigh ? unit : 0;
  }
  if (high != 0) AppendUtf8(utf8, replacement);
  return utf8;
}

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string ToUpper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperLetter);
  return upper;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return UpperLetter(a) == UpperLetter(b); });
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Decoded character = Decode(bytes);
    if (character.length == 0) return false;
    bytes.remove_prefix(character.length);
  }
  return true;
}

std::string Utf8FromBytes(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (code >> 6));
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

std::string BytesFromUtf8(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const Decoded character = Decode(utf8);
    bytes += character.length != 0 && character.code <= 0xFF ? static_cast<char>(character.code) : '?';
    utf8.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return bytes;
}

FileText FileTextOf(std::string_view content) {
  struct Mark {
    std::string_view bytes;
    std::size_t highByte;  // where it stands in a unit of two bytes
  };
  for (const Mark& mark : {Mark{"\xFF\xFE", 1}, Mark{"\xFE\xFF", 0}}) {
    if (content.starts_with(mark.bytes)) return {Utf8FromUnits(content.substr(2), mark.highByte), true};
  }
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  if (content.starts_with(utf8Mark)) content.remove_prefix(utf8Mark.size());
  return {std::string(content), IsUtf8(content)};
}

std::string BytesFromFileText(std::string_view content) {
  FileText file = FileTextOf(content);
  return file.isUtf8 ? BytesFromUtf8(file.text) : std::move(file.text);
}

std::string CodedText(std::string_view text, std::size_t most) {
  std::string coded;
  for (const char character : text.substr(0, most)) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 32 || code == 127) {
      coded += '{' + Hexadecimal(code, 2) + '}';
    } else {
      coded += character;
    }
  }
  return text.size() > most ? coded + "..." : coded;
}

std::string OnOneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    text.remove_prefix(end + (pair ? 2 : 1));
  }
  return lines;
}

}  // namespace quarlin
