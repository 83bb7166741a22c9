// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/character_ranges.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "macro/expander.h"

namespace quarlin {
namespace {

constexpr std::string_view opening = "[ASC";
constexpr std::size_t macroLength = std::string_view("[ASCxxx-yyy]").size();

struct CodeRange {
  int first;
  int last;
};

// Up to the first character that is no digit; 0 without any.
int CodeAt(std::string_view digits) {
  int code = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), code);
  return code;
}

std::optional<CodeRange> RangeOf(std::string_view macro) {
  if (macro.size() < macroLength || macro.back() != ']') return std::nullopt;
  const CodeRange range{CodeAt(macro.substr(4, 3)), CodeAt(macro.substr(8, 3))};
  if (range.first > range.last || range.last > 255) return std::nullopt;
  return range;
}

std::string Characters(CodeRange range) {
  std::string characters;
  for (int code = std::max(range.first, 0); code <= range.last; ++code) {
    characters += static_cast<char>(code);
  }
  return characters;
}

}  // namespace

void ExpandCharacterRanges(std::string& text) {
  for (std::size_t at = text.find(opening); at != std::string::npos; at = text.find(opening, at + 1)) {
    const std::string macro = text.substr(at, macroLength);
    if (const auto range = RangeOf(macro)) ReplaceFirst(text, macro, Characters(*range));
  }
}

}  // namespace quarlin
