#include "ui/qt/text_selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace quarlin {
namespace {

enum class CharClass { Word, Blank, Other };

CharClass ClassOf(char cell) {
  const auto code = static_cast<unsigned char>(cell);
  const auto lower = static_cast<unsigned char>(code | 0x20);
  const bool letter = (lower >= 'a' && lower <= 'z') || (code >= 0xC0 && code != 0xD7 && code != 0xF7);
  if (letter || (code >= '0' && code <= '9') || code == '_') return CharClass::Word;
  return code == ' ' || code == '\t' ? CharClass::Blank : CharClass::Other;
}

// Hands each selected row with its selected cells to `take`, lines in order.
template <typename Take>
void ForEachRow(const TextRing& ring, RowFormat format, const TextSelection& selection, Take take) {
  if (selection.Empty()) return;
  const std::uint64_t first = std::max(selection.Span().begin.line, ring.FirstLine());
  const std::uint64_t end = std::min(selection.Span().end.line + 1, ring.EndLine());
  for (std::uint64_t line = first; line < end; ++line) {
    take(Row(ring.Line(line), format), selection.CellsOf(line), line == first);
  }
}

}  // namespace

void TextSelection::Start(TextSpan unit) {
  origin_ = unit;
  span_ = unit;
}

void TextSelection::ExtendTo(TextSpan unit) {
  if (!origin_) origin_ = unit;
  span_ = {std::min(origin_->begin, unit.begin), std::max(origin_->end, unit.end)};
}

void TextSelection::Clear() {
  origin_.reset();
  span_ = {};
}

void TextSelection::KeepFrom(std::uint64_t firstLine) {
  const TextPosition first{firstLine, 0};
  const auto clamp = [&](TextSpan& span) { span = {std::max(span.begin, first), std::max(span.end, first)}; };
  clamp(span_);
  if (origin_) clamp(*origin_);
}

TextSelection::Cells TextSelection::CellsOf(std::uint64_t line) const {
  if (Empty() || line < span_.begin.line || line > span_.end.line) return {};
  return {line == span_.begin.line ? span_.begin.column : 0,
          line == span_.end.line ? span_.end.column : Row::throughLineEnd};
}

TextSpan WordAt(const Row& row, TextPosition cell) {
  const std::string& cells = row.Cells();
  if (cells.empty()) return {cell, cell};
  const std::size_t hit = std::min(cell.column, cells.size() - 1);
  std::size_t begin = hit;
  std::size_t end = hit + 1;
  while (begin > 0 && ClassOf(cells[begin - 1]) == ClassOf(cells[hit])) --begin;
  while (end < cells.size() && ClassOf(cells[end]) == ClassOf(cells[hit])) ++end;
  return {{cell.line, begin}, {cell.line, end}};
}

TextSpan WholeText(const TextRing& ring, RowFormat format) {
  const TextPosition begin{ring.FirstLine(), 0};
  if (ring.FirstLine() == ring.EndLine()) return {begin, begin};
  const std::uint64_t last = ring.EndLine() - 1;
  return {begin, {last, Row(ring.Line(last), format).Length()}};
}

std::string SelectedText(const TextRing& ring, RowFormat format, const TextSelection& selection) {
  std::string text;
  ForEachRow(ring, format, selection, [&](const Row& row, TextSelection::Cells cells, bool first) {
    if (!first) text += '\n';
    text += row.CopiedText(cells.begin, cells.end);
  });
  return text;
}

std::string SelectedHex(const TextRing& ring, RowFormat format, const TextSelection& selection) {
  std::string text;
  ForEachRow(ring, format, selection, [&](const Row& row, TextSelection::Cells cells, bool first) {
    if (!first) text += '\n';
    const char* gap = "";
    for (const char byte : row.CopiedBytes(cells.begin, cells.end)) {
      fmt::format_to(std::back_inserter(text), "{}{:02X}", gap, static_cast<unsigned char>(byte));
      gap = " ";
    }
  });
  return text;
}

}  // namespace quarlin
