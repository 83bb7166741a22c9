// What is selected in the view: a stretch between two edges of cells, held by line numbers, so that it
// stays on its text while lines come and go.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "display/text_ring.h"
#include "ui/qt/row_text.h"

namespace quarlin {

// The edge before the cell `column` of a line's row.
struct TextPosition {
  std::uint64_t line = 0;
  std::size_t column = 0;
  auto operator<=>(const TextPosition&) const = default;
};

struct TextSpan {
  TextPosition begin;
  TextPosition end;
  bool Empty() const { return begin == end; }
  bool operator==(const TextSpan&) const = default;
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

  // The selected cells of a row: [begin, end), where an end of Row::throughLineEnd means that the selection
  // goes on in the next line. Both 0 when there are none.
  struct Cells {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  Cells CellsOf(std::uint64_t line) const;

 private:
  std::optional<TextSpan> origin_;
  TextSpan span_;
};

// The word, or the gap between two words, in which the cell stands.
TextSpan WordAt(const Row& row, TextPosition cell);

// All that the ring keeps.
TextSpan WholeText(const TextRing& ring, RowFormat format);

// The text of the selection, lines joined by "\n"; and its bytes as pairs of hex digits, a row for a line.
std::string SelectedText(const TextRing& ring, RowFormat format, const TextSelection& selection);
std::string SelectedHex(const TextRing& ring, RowFormat format, const TextSelection& selection);

}  // namespace quarlin
