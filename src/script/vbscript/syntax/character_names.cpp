// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/syntax/character_names.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

struct Row {
  std::uint32_t code;
  std::string_view name;
};

// What comes with text from web pages and word processors. Those from 0080 to 009F are the same signs in a
// file of code page 1252, which is read one byte a character.
constexpr std::array names = std::to_array<Row>({
    {0x0085, "HORIZONTAL ELLIPSIS of code page 1252"},
    {0x0091, "LEFT SINGLE QUOTATION MARK of code page 1252"},
    {0x0092, "RIGHT SINGLE QUOTATION MARK of code page 1252"},
    {0x0093, "LEFT DOUBLE QUOTATION MARK of code page 1252"},
    {0x0094, "RIGHT DOUBLE QUOTATION MARK of code page 1252"},
    {0x0096, "EN DASH of code page 1252"},
    {0x0097, "EM DASH of code page 1252"},
    {0x00AD, "SOFT HYPHEN"},
    {0x00B4, "ACUTE ACCENT"},
    {0x00D7, "MULTIPLICATION SIGN"},
    {0x2000, "EN QUAD"},
    {0x2001, "EM QUAD"},
    {0x2002, "EN SPACE"},
    {0x2003, "EM SPACE"},
    {0x2004, "THREE-PER-EM SPACE"},
    {0x2005, "FOUR-PER-EM SPACE"},
    {0x2006, "SIX-PER-EM SPACE"},
    {0x2007, "FIGURE SPACE"},
    {0x2008, "PUNCTUATION SPACE"},
    {0x2009, "THIN SPACE"},
    {0x200A, "HAIR SPACE"},
    {0x200B, "ZERO WIDTH SPACE"},
    {0x200C, "ZERO WIDTH NON-JOINER"},
    {0x200D, "ZERO WIDTH JOINER"},
    {0x200E, "LEFT-TO-RIGHT MARK"},
    {0x200F, "RIGHT-TO-LEFT MARK"},
    {0x2010, "HYPHEN"},
    {0x2011, "NON-BREAKING HYPHEN"},
    {0x2012, "FIGURE DASH"},
    {0x2013, "EN DASH"},
    {0x2014, "EM DASH"},
    {0x2015, "HORIZONTAL BAR"},
    {0x2018, "LEFT SINGLE QUOTATION MARK"},
    {0x2019, "RIGHT SINGLE QUOTATION MARK"},
    {0x201A, "SINGLE LOW-9 QUOTATION MARK"},
    {0x201C, "LEFT DOUBLE QUOTATION MARK"},
    {0x201D, "RIGHT DOUBLE QUOTATION MARK"},
    {0x201E, "DOUBLE LOW-9 QUOTATION MARK"},
    {0x2026, "HORIZONTAL ELLIPSIS"},
    {0x2028, "LINE SEPARATOR"},
    {0x2029, "PARAGRAPH SEPARATOR"},
    {0x202F, "NARROW NO-BREAK SPACE"},
    {0x205F, "MEDIUM MATHEMATICAL SPACE"},
    {0x2060, "WORD JOINER"},
    {0x2212, "MINUS SIGN"},
    {0x3000, "IDEOGRAPHIC SPACE"},
    {0xFEFF, "BYTE ORDER MARK"},
    {0xFFFD, "REPLACEMENT CHARACTER"},
});

std::uint32_t CodeAt(std::u16string_view text, std::size_t offset) {
  const std::uint32_t unit = text[offset];
  const std::uint32_t next = offset + 1 < text.size() ? text[offset + 1] : 0;
  const bool isPair = (unit & 0xFC00U) == 0xD800 && (next & 0xFC00U) == 0xDC00;
  return isPair ? 0x10000 + ((unit & 0x3FFU) << 10) + (next & 0x3FFU) : unit;
}

}  // namespace

std::u16string NameOfCharacter(std::u16string_view text, std::size_t offset) {
  constexpr std::uint32_t firstVisible = 0x21;
  constexpr std::uint32_t firstBeyondAscii = 0x7F;
  constexpr std::uint32_t firstVisibleBeyond = 0xA1;
  const std::uint32_t code = CodeAt(text, offset);
  if (code >= firstVisible && code < firstBeyondAscii) return std::u16string(text.substr(offset, 1));
  std::u16string name = Utf16Of(fmt::format("U+{:04X}", code));
  const auto row = std::lower_bound(names.begin(), names.end(), code,
                                    [](const Row& one, std::uint32_t wanted) { return one.code < wanted; });
  if (row != names.end() && row->code == code) return name + u" " + Utf16Of(row->name);
  if (code >= firstVisibleBeyond) name.append(u" ").append(text.substr(offset, code > 0xFFFF ? 2 : 1));
  return name;
}

}  // namespace quarlin::vbs
