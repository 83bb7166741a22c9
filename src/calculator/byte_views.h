// SPDX-License-Identifier: GPL-3.0-or-later
// The same bytes in four views, and the way back from what a user types into one of them. Where a byte stands
// in a view is known for each, so that what is marked in one can be marked in all.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calculator/number_format.h"

namespace quarlin {

enum class ByteView : std::size_t { Text, Hexadecimal, Decimal, Binary };
inline constexpr std::array byteViews{ByteView::Text, ByteView::Hexadecimal, ByteView::Decimal,
                                      ByteView::Binary};

// From `begin` to before `end`: characters of a view, or bytes.
struct Stretch {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
  bool Empty() const { return begin == end; }
  std::uint32_t Size() const { return end - begin; }
  bool operator==(const Stretch&) const = default;
};

// Where each byte stands in a view, in rising order.
using BytePlaces = std::vector<Stretch>;

struct WrittenBytes {
  std::string text;
  BytePlaces places;
};

// In the text view what macros would send as something else is written as its code: control characters, a
// brace as "{{", and a "^" that would begin a line end. Lines are broken behind a line end and where they
// would become very long; a break stands for no byte. Numbers are written 16 a line, binary ones 8.
WrittenBytes WriteBytes(std::string_view bytes, ByteView view, const NumberFormat& format);

// The text view on one line, as it can be put into a command.
std::string MacroText(std::string_view bytes);

struct ReadBytes {
  std::string bytes;
  BytePlaces places;
  std::string trouble;  // for the user; empty when all of it was read
  Stretch troubleAt;    // the characters that it is about
};

// Text: "{41}" and "{{" as in macros, but what macros would send as it stands or not at all is an error here;
// "^r" and words in brackets are text. Numbers: any of the formats, mixed; a number may be short of digits, a
// row of digits is read in groups of 2, 3 or 8. `text` counts in UTF-16, as the places do.
ReadBytes ReadView(std::u16string_view text, ByteView view);

// The bytes that a stretch of the view touches; for an empty one the place between two bytes.
Stretch BytesAt(const BytePlaces& places, Stretch characters);

// The characters of a stretch of bytes, which may be empty.
Stretch CharactersOf(const BytePlaces& places, Stretch bytes);

}  // namespace quarlin
