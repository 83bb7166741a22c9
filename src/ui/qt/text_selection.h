// SPDX-License-Identifier: GPL-3.0-or-later
// What is selected in the view: a stretch between two edges of bytes, held by line numbers, so that it stays
// on its text while lines come and go and however they are shown.
#pragma once

#include <QString>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "display/row_map.h"
#include "display/text_ring.h"
#include "ui/qt/row_text.h"

namespace quarlin {

// The edge before a byte of a line.
struct TextPosition {
  std::uint64_t line = 0;
  std::size_t byte = 0;
  // The check takes the 0 that a comparison is compared with for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  auto operator<=>(const TextPosition&) const = default;
};

struct TextSpan {
  TextPosition begin;
  TextPosition end;
  bool Empty() const { return begin == end; }
  bool operator==(const TextSpan&) const = default;
};

// Bytes of a line from `begin` to before `end`.
struct ByteRange {
  // The end of a stretch that goes on in the next line, so that the line end is part of it.
  static constexpr std::size_t throughLineEnd = std::string::npos;

  std::size_t begin = 0;
  std::size_t end = 0;
  bool Empty() const { return begin == end; }
  bool Has(std::size_t byte) const { return byte >= begin && byte < end; }
};

class TextSelection {
 public:
  // Begins at a place, a word or a line; extending never lets go of that, and begins where nothing has.
  void Start(TextSpan unit);
  void ExtendTo(TextSpan unit);
  void Clear();

  // Gives up what lies in lines that are no longer kept.
  void KeepFrom(std::uint64_t firstLine);

  const TextSpan& Span() const { return span_; }
  bool Empty() const { return span_.Empty(); }

  // What of a line is selected.
  ByteRange BytesOf(std::uint64_t line) const;

 private:
  std::optional<TextSpan> origin_;
  TextSpan span_;
};

// The word, or the gap between two words, in which the byte stands; `text` is what its line shows.
TextSpan WordAt(std::string_view text, TextPosition byte);

// All that the ring keeps.
TextSpan WholeText(const TextRing& ring);

// The selected text of the lines that are shown, joined by "\n", control characters as they are.
std::string SelectedText(const TextRing& ring, const RowMap& map, const TextSelection& selection);

// Its bytes as they are, of the wire alone as below.
std::string SelectedBytes(const TextRing& ring, const RowMap& map, const TextSelection& selection);

// Its bytes as pairs of hex digits, a row for a line. Bytes of the wire alone: neither lines of the program's
// own nor what "Append Row" has put behind a string.
std::string SelectedHex(const TextRing& ring, const RowMap& map, const TextSelection& selection);

}  // namespace quarlin
