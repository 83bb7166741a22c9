// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/row_painter.h"

#include <algorithm>

namespace quarlin {
namespace {

// A gap goes with the pairs on both of its sides.
bool Covers(const ByteRange& range, const Cell& cell) {
  if (cell.byte == Cell::noByte || !range.Has(cell.byte)) return false;
  return cell.look != Cell::Look::Gap || range.Has(cell.byte + std::size_t{1});
}

bool IsSelected(const RowPainter::Marked& marked, const Cell& cell) {
  return Covers(marked.selected, cell);
}

bool IsFound(const RowPainter::Marked& marked, const Cell& cell) {
  return std::any_of(marked.matches.begin(), marked.matches.end(),
                     [&](const ByteRange& match) { return Covers(match, cell); });
}

}  // namespace

void RowPainter::PaintRow(QPainter& painter, const TextLine& line, const LineRows& rows, std::size_t row,
                          const Marked& marked, const Frame& frame) {
  const std::span<const Cell> cells = rows.Row(row);
  const bool lastRow = row + 1 == rows.Count();
  if (!marked.selected.Empty() || !marked.matches.empty()) {
    PaintBackground(painter, cells, rows, lastRow, marked, frame);
  }
  PaintBoxes(painter, line, cells, marked, frame);
  const std::size_t end = std::min(cells.size(), frame.firstCell + frame.cells);
  QPointF place(frame.left, frame.top + table_.Ascent());
  for (std::size_t at = frame.firstCell; at < end; ++at, place.rx() += CellWidth()) {
    const Cell& cell = cells[at];
    const bool bracket = cell.look == Cell::Look::Code && (cell.character == '<' || cell.character == '>');
    if (bracket) continue;  // a box stands in their place
    const auto marks =
        cell.look == Cell::Look::Break ? table_.Marks(GlyphTable::Sign::Break) : table_.Marks(cell.character);
    if (marks.empty()) continue;
    const QRgb color = IsSelected(marked, cell) ? colors_.HighlightedText() : ColorOf(line, cell);
    for (const GlyphTable::Mark& mark : marks) batch_.Add(mark, place, color);
  }
}

void RowPainter::PaintBackground(QPainter& painter, std::span<const Cell> cells, const LineRows& rows,
                                 bool lastRow, const Marked& marked, const Frame& frame) const {
  const auto fill = [&](std::size_t from, int width, QRgb color) {
    painter.fillRect(LeftOf(from, frame), frame.top, width, RowHeight(), QColor::fromRgb(color));
  };
  const std::size_t end = std::min(cells.size(), frame.firstCell + frame.cells);
  for (std::size_t at = frame.firstCell; at < end; ++at) {
    const Cell& cell = cells[at];
    if (IsSelected(marked, cell)) {
      fill(at, CellWidth(), colors_.Highlight());
    } else if (IsFound(marked, cell)) {
      fill(at, CellWidth(), colors_.Found());
    }
  }
  // A selected line end is half a cell, so that an empty line shows, too.
  const bool endSelected =
      marked.selected.end == ByteRange::throughLineEnd && marked.selected.begin <= rows.ShownBytes();
  if (lastRow && endSelected && cells.size() >= frame.firstCell) {
    fill(cells.size(), CellWidth() / 2, colors_.Highlight());
  }
}

void RowPainter::PaintBoxes(QPainter& painter, const TextLine& line, std::span<const Cell> cells,
                            const Marked& marked, const Frame& frame) {
  const std::size_t end = std::min(cells.size(), frame.firstCell + frame.cells);
  for (std::size_t at = 0; at < end; ++at) {
    if (cells[at].look != Cell::Look::Code || cells[at].character != '<') continue;
    const std::size_t begin = at;
    while (cells[at].character != '>') ++at;
    if (begin < frame.firstCell) continue;  // its name alone shows where it is cut
    const QRgb color =
        IsSelected(marked, cells[begin]) ? colors_.HighlightedText() : ColorOf(line, cells[begin]);
    const QPixmap& box = BoxOf(at + 1 - begin, color, painter.device()->devicePixelRatioF());
    painter.drawPixmap(LeftOf(begin, frame), frame.top, box);
  }
}

// Drawn once: a rounded frame, filled with a breath of its colour, from the middle of "<" to that of ">".
const QPixmap& RowPainter::BoxOf(std::size_t cells, QRgb color, double scale) {
  const auto known = std::find_if(boxes_.begin(), boxes_.end(), [&](const Box& box) {
    return box.cells == cells && box.color == color && box.scale == scale;
  });
  if (known != boxes_.end()) return known->picture;
  constexpr std::size_t most = 64;
  if (boxes_.size() >= most) boxes_.clear();

  const int width = static_cast<int>(cells) * CellWidth();
  QPixmap picture(QSize(width, RowHeight()) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor line = QColor::fromRgb(color);
  line.setAlphaF(0.45F);
  painter.setPen(line);
  line.setAlphaF(0.10F);
  painter.setBrush(line);
  const double inset = 0.45 * CellWidth();
  const QRectF frame(inset, 1.5, width - 2 * inset, RowHeight() - 3);
  painter.drawRoundedRect(frame, 3.5, 3.5);
  painter.end();
  return boxes_.emplace_back(Box{cells, color, scale, std::move(picture)}).picture;
}

void RowPainter::PaintGutter(const TextLine& line, std::string_view time, std::size_t timeCells, int top) {
  const int base = top + table_.Ascent();
  QPointF place(margin + static_cast<int>(timeCells - std::min(time.size(), timeCells)) * CellWidth(), base);
  for (const char character : time) {
    for (const GlyphTable::Mark& mark : table_.Marks(character)) batch_.Add(mark, place, colors_.Dimmed());
    place.rx() += CellWidth();
  }
  const Source source = line.Whose();
  if (source != Source::Sent && source != Source::Received) return;
  const QRgb color = colors_.Of(line.runs.front().color).full;
  const auto sign = source == Source::Sent ? GlyphTable::Sign::Sent : GlyphTable::Sign::Received;
  const std::size_t column = timeCells == 0 ? 0 : timeCells + 1;
  const QPointF signPlace(margin + static_cast<int>(column) * CellWidth(), base);
  for (const GlyphTable::Mark& mark : table_.Marks(sign)) batch_.Add(mark, signPlace, color);
}

QRgb RowPainter::ColorOf(const TextLine& line, const Cell& cell) {
  if (cell.look == Cell::Look::Furniture || cell.look == Cell::Look::Break) return colors_.Dimmed();
  const TextColors::Shades& shades = colors_.Of(line.RunAt(cell.byte).color);
  const bool faint = cell.look == Cell::Look::Control || cell.look == Cell::Look::Code;
  return faint ? shades.dimmed : shades.full;
}

}  // namespace quarlin
