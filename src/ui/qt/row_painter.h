// Paints rows of cells: the selection's background at once, the glyphs of all rows together at the end.
#pragma once

#include <QFont>
#include <QPainter>
#include <QPalette>

#include "ui/qt/glyph_table.h"
#include "ui/qt/row_text.h"
#include "ui/qt/text_colors.h"
#include "ui/qt/text_selection.h"

namespace quarlin {

class RowPainter {
 public:
  static constexpr int margin = 4;  // left and right of the text

  RowPainter(const QFont& font, const QPalette& palette) : table_(font), colors_(palette) {}

  int CellWidth() const { return table_.CellWidth(); }
  int RowHeight() const { return table_.RowHeight(); }

  // The columns that are visible, wholly or in part.
  struct Columns {
    int first = 0;
    int count = 0;
  };

  void PaintRow(QPainter& painter, const Row& row, TextSelection::Cells selected, int y, Columns columns);
  void Finish(QPainter& painter) { batch_.Draw(painter, table_); }

 private:
  void PaintSelection(QPainter& painter, TextSelection::Cells selected, std::size_t length, int y,
                      Columns columns) const;
  QRgb ColorOf(const Row& row, std::size_t cell);

  GlyphTable table_;
  TextColors colors_;
  GlyphBatch batch_;
};

}  // namespace quarlin
