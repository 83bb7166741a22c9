// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/functions/text_search.h"

#include <algorithm>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

constexpr char16_t endOfAscii = 0x80;

char16_t Folded(char16_t unit) {
  if (unit >= endOfAscii) return LowerOf(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool SameFolded(char16_t unit, char16_t folded) {
  return unit == folded || Folded(unit) == folded;
}

}  // namespace

SoughtText::SoughtText(std::u16string_view text, bool ignoreCase) : ignoreCase_(ignoreCase), text_(text) {
  if (!ignoreCase) return;
  folded_.resize(text.size());
  std::transform(text.begin(), text.end(), folded_.begin(), Folded);
  text_ = folded_;
}

// The text searched is folded unit by unit on the way: a copy of it would make a loop over all places
// in a long text quadratic.
std::size_t SoughtText::FindFolded(std::u16string_view where, std::size_t from) const {
  if (from > where.size()) return nowhere;
  const auto start = where.begin() + static_cast<std::ptrdiff_t>(from);
  const auto found = std::search(start, where.end(), text_.begin(), text_.end(), SameFolded);
  if (found == where.end() && !text_.empty()) return nowhere;
  return static_cast<std::size_t>(found - where.begin());
}

std::size_t SoughtText::FindLastFolded(std::u16string_view where) const {
  const auto found = std::find_end(where.begin(), where.end(), text_.begin(), text_.end(), SameFolded);
  if (found == where.end() && !text_.empty()) return nowhere;
  return static_cast<std::size_t>(found - where.begin());
}

}  // namespace quarlin::vbs
