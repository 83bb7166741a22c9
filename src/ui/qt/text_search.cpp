#include "ui/qt/text_search.h"

#include <algorithm>

namespace quarlin {
namespace {

// Makes the capital letters of Latin-1 small; without branches or a table, so that the compiler can take
// many at once.
void MakeLower(std::string& text) {
  for (char& letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    const bool ascii = static_cast<unsigned char>(code - 'A') < 26;
    const bool accented = (static_cast<unsigned char>(code - 0xC0) < 31) & (code != 0xD7);
    letter = static_cast<char>(code | ((ascii | accented) << 5));
  }
}

class Searcher {
 public:
  Searcher(const TextRing& ring, RowFormat format, const TextQuery& query)
      : ring_(ring), format_(format), query_(query), needle_(query.text) {
    if (!query.caseSensitive) MakeLower(needle_);
  }

  // In one row: the first match at or after `from`, or the last that ends at or before it.
  std::optional<TextSpan> InLine(std::uint64_t line, std::size_t from) const {
    const std::string cells = CellsOf(line);
    std::size_t at = std::string::npos;
    if (query_.direction == SearchDirection::Forward) {
      at = cells.find(needle_, from);
    } else if (from >= needle_.size()) {
      at = cells.rfind(needle_, from - needle_.size());
    }
    if (at == std::string::npos) return std::nullopt;
    return TextSpan{{line, at}, {line, at + needle_.size()}};
  }

  bool Matches(const TextSpan& span) const {
    if (span.begin.line != span.end.line || span.begin.line >= ring_.EndLine()) return false;
    if (span.end.column - span.begin.column != needle_.size()) return false;
    const std::string cells = CellsOf(span.begin.line);
    return span.end.column <= cells.size() && cells.compare(span.begin.column, needle_.size(), needle_) == 0;
  }

 private:
  std::string CellsOf(std::uint64_t line) const {
    std::string cells = Row(ring_.Line(line), format_).Cells();
    if (!query_.caseSensitive) MakeLower(cells);
    return cells;
  }

  const TextRing& ring_;
  RowFormat format_;
  const TextQuery& query_;
  std::string needle_;
};

}  // namespace

std::optional<TextSpan> FindText(const TextRing& ring, RowFormat format, const TextQuery& query,
                                 TextPosition from) {
  const std::uint64_t first = ring.FirstLine();
  const std::uint64_t count = ring.EndLine() - first;
  if (count == 0) return std::nullopt;

  const Searcher searcher(ring, format, query);
  const bool forward = query.direction == SearchDirection::Forward;
  const std::uint64_t start = std::clamp(from.line, first, first + count - 1) - first;
  const std::size_t whole = forward ? 0 : std::string::npos;
  if (const auto match = searcher.InLine(first + start, from.column)) return match;
  // The last step takes the first line again, now as a whole.
  for (std::uint64_t step = 1; step <= count; ++step) {
    const std::uint64_t index = (forward ? start + step : start + count - step) % count;
    if (const auto match = searcher.InLine(first + index, whole)) return match;
  }
  return std::nullopt;
}

bool Matches(const TextRing& ring, RowFormat format, const TextQuery& query, const TextSpan& span) {
  return Searcher(ring, format, query).Matches(span);
}

}  // namespace quarlin
