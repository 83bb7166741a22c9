// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/edited_text.h"

#include <algorithm>
#include <array>

#include "base/enum_table.h"
#include "base/text.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

struct Mark {
  std::string_view bytes;
  TextEncoding encoding;
};

constexpr std::array<Mark, 3> marks{{
    {"\xFF\xFE", TextEncoding::Utf16LittleEndian},
    {"\xFE\xFF", TextEncoding::Utf16BigEndian},
    {"\xEF\xBB\xBF", TextEncoding::MarkedUtf8},
}};

struct EncodingWords {
  TextEncoding encoding;
  std::string_view name;
};

constexpr auto encodingNames = std::to_array<EncodingWords>({{TextEncoding::Utf8, "UTF-8"},
                                                             {TextEncoding::MarkedUtf8, "UTF-8 with mark"},
                                                             {TextEncoding::Latin1, "Latin-1"},
                                                             {TextEncoding::Utf16LittleEndian, "UTF-16 LE"},
                                                             {TextEncoding::Utf16BigEndian, "UTF-16 BE"}});
static_assert(StandInOrder(encodingNames, &EncodingWords::encoding, TextEncoding::Utf16BigEndian));

TextEncoding EncodingOf(std::string_view content, bool isUtf8) {
  for (const Mark& mark : marks) {
    if (content.starts_with(mark.bytes)) return isUtf8 ? mark.encoding : TextEncoding::Latin1;
  }
  return isUtf8 ? TextEncoding::Utf8 : TextEncoding::Latin1;
}

std::string_view FirstLineEnd(std::string_view text) {
  const std::size_t end = text.find_first_of("\r\n");
  if (end == std::string_view::npos || text[end] == '\n') return "\n";
  return text.substr(end).starts_with("\r\n") ? "\r\n" : "\r";
}

// A mark that was read as two or three characters of Latin-1 is no mark.
std::string_view MarkOf(TextEncoding encoding) {
  for (const Mark& mark : marks) {
    if (mark.encoding == encoding) return mark.bytes;
  }
  return {};
}

std::string Units(std::u16string_view text, bool highFirst) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    const std::array<char, 2> halves{static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    bytes += halves[highFirst ? 1 : 0];
    bytes += halves[highFirst ? 0 : 1];
  }
  return bytes;
}

bool FitsLatin1(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit <= 0xFF; });
}

}  // namespace

std::optional<EditedText> EditedTextOf(std::string_view content) {
  const FileText read = FileTextOf(content);
  EditedText text;
  text.encoding = EncodingOf(content, read.isUtf8);
  text.utf8 = read.isUtf8 ? read.text : Utf8FromBytes(read.text);
  text.lineEnd = FirstLineEnd(text.utf8);
  if (text.utf8.find('\0') != std::string::npos) return std::nullopt;
  if (FileContentOf(text.utf8, text.encoding) != content) return std::nullopt;
  return text;
}

std::optional<std::string> FileContentOf(std::string_view utf8, TextEncoding encoding) {
  std::string content(MarkOf(encoding));
  switch (encoding) {
    case TextEncoding::Latin1:
      if (!FitsLatin1(vbs::Utf16Of(utf8))) return std::nullopt;
      return BytesFromUtf8(utf8);
    case TextEncoding::Utf16LittleEndian:
    case TextEncoding::Utf16BigEndian:
      return content + Units(vbs::Utf16Of(utf8), encoding == TextEncoding::Utf16BigEndian);
    case TextEncoding::Utf8:
    case TextEncoding::MarkedUtf8:
      break;
  }
  return content.append(utf8);
}

std::string_view EncodingName(TextEncoding encoding) {
  return encodingNames[static_cast<std::size_t>(encoding)].name;
}

}  // namespace quarlin
