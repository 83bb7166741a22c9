// SPDX-License-Identifier: GPL-3.0-or-later
// Paints rows of cells: backgrounds at once, the glyphs of all rows together at the end.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "ui/qt/glyph_table.h"
#include "ui/qt/row_text.h"
#include "ui/qt/text_colors.h"
#include "ui/qt/text_selection.h"

namespace quarlin {

class RowPainter {
 public:
  static constexpr int margin = 4;  // left and right of everything

  RowPainter(const QFont& font, const QPalette& palette) : table_(font), colors_(palette) {}

  int CellWidth() const { return table_.CellWidth(); }
  int RowHeight() const { return table_.RowHeight(); }

  // What lies over the bytes of a line.
  struct Marked {
    ByteRange selected;
    std::span<const ByteRange> matches;
  };

  // Where the text of a row goes, and which of its cells are visible, wholly or in part.
  struct Frame {
    int left = margin;
    int top = 0;
    std::size_t firstCell = 0;
    std::size_t cells = 0;
  };

  // A row of the line that `rows` has laid out.
  void PaintRow(QPainter& painter, const TextLine& line, const LineRows& rows, std::size_t row,
                const Marked& marked, const Frame& frame);

  // The gutter of a line's first row: the time, flush right in so many cells, and the direction behind it.
  void PaintGutter(const TextLine& line, std::string_view time, std::size_t timeCells, int top);

  void Finish(QPainter& painter) { batch_.Draw(painter, table_); }

 private:
  void PaintBackground(QPainter& painter, std::span<const Cell> cells, const LineRows& rows, bool lastRow,
                       const Marked& marked, const Frame& frame) const;
  void PaintBoxes(QPainter& painter, const TextLine& line, std::span<const Cell> cells, const Marked& marked,
                  const Frame& frame);
  const QPixmap& BoxOf(std::size_t cells, QRgb color, double scale);
  QRgb ColorOf(const TextLine& line, const Cell& cell);
  int LeftOf(std::size_t cell, const Frame& frame) const {
    return frame.left + (static_cast<int>(cell) - static_cast<int>(frame.firstCell)) * CellWidth();
  }

  struct Box {
    std::size_t cells;
    QRgb color;
    double scale;
    QPixmap picture;
  };

  GlyphTable table_;
  TextColors colors_;
  GlyphBatch batch_;
  std::vector<Box> boxes_;  // of codes, drawn once for each width and colour
};

}  // namespace quarlin
