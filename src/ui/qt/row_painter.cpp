#include "ui/qt/row_painter.h"

#include <algorithm>

namespace quarlin {

void RowPainter::PaintRow(QPainter& painter, const Row& row, TextSelection::Cells selected, int y,
                          Columns columns) {
  PaintSelection(painter, selected, row.Length(), y, columns);
  const auto first = static_cast<std::size_t>(columns.first);
  const std::size_t end = std::min(row.Length(), first + static_cast<std::size_t>(columns.count));
  QPointF place(margin, y + table_.Ascent());
  for (std::size_t cell = first; cell < end; ++cell, place.rx() += CellWidth()) {
    const auto marks = table_.Marks(row.Cells()[cell]);
    if (marks.empty()) continue;
    const bool isSelected = cell >= selected.begin && cell < selected.end;
    const QRgb color = isSelected ? colors_.HighlightedText() : ColorOf(row, cell);
    for (const GlyphTable::Mark& mark : marks) batch_.Add(mark, place, color);
  }
}

void RowPainter::PaintSelection(QPainter& painter, TextSelection::Cells selected, std::size_t length, int y,
                                Columns columns) const {
  if (selected.begin == selected.end) return;
  const auto column = [&](std::size_t cell) {
    const auto relative = static_cast<int>(std::min<std::size_t>(cell, length)) - columns.first;
    return std::clamp(relative, 0, columns.count) * CellWidth() + margin;
  };
  const int left = column(selected.begin);
  // A selected line end is half a cell, so that an empty line shows, too.
  const bool endShows = selected.end == Row::throughLineEnd && static_cast<int>(length) >= columns.first;
  const int right = column(selected.end) + (endShows ? CellWidth() / 2 : 0);
  painter.fillRect(left, y, right - left, RowHeight(), QColor::fromRgb(colors_.Highlight()));
}

QRgb RowPainter::ColorOf(const Row& row, std::size_t cell) {
  const auto byte = row.ByteAt(cell);
  if (!byte) return colors_.Dimmed();
  const TextColors::Shades& shades = colors_.Of(row.ColorAt(*byte));
  return row.IsControl(cell) ? shades.dimmed : shades.full;
}

}  // namespace quarlin
