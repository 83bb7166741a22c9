// SPDX-License-Identifier: GPL-3.0-or-later
// A received-text view on a display that the test fills, with a hand on its mouse.
#pragma once

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QScrollBar>
#include <string>
#include <string_view>

#include "support/virtual_loop.h"
#include "ui/qt/glyph_table.h"
#include "ui/qt/received_text_view.h"
#include "ui/qt/row_painter.h"

namespace quarlin {

inline QPalette PaletteOn(QColor base, QColor text) {
  QPalette palette(base);
  palette.setColor(QPalette::Base, base);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::Highlight, QColor(0, 120, 0));
  return palette;
}

// A view of about 20 rows on a display that the test fills.
struct ReceivedTextRig {
  ReceivedTextRig() {
    view.setPalette(PaletteOn(Qt::white, Qt::black));
    view.resize(600, 20 * cells.RowHeight());
    view.Show(display.txtric);
    view.show();
  }

  void Add(std::string_view text, Color color = colors::black) { Add(text, TextKind::Received, color); }
  void Add(std::string_view text, TextKind kind, Color color = colors::black) {
    display.txtric.Append(text, kind, color);
  }

  void AddLines(int count) {
    for (int i = 0; i < count; ++i) Add("line " + std::to_string(added++) + "\r\n");
    view.Refresh();
  }

  int Scroll() const { return view.verticalScrollBar()->value(); }
  int ScrollEnd() const { return view.verticalScrollBar()->maximum(); }
  void ScrollTo(int value) { view.verticalScrollBar()->setValue(value); }

  // How many cells of text a row has.
  int Cells() const {
    return (view.viewport()->width() - 2 * RowPainter::margin) / cells.CellWidth() - gutter;
  }

  // The left edge of a cell of the text, counted from what is visible.
  QPoint At(int row, int column) const {
    return {RowPainter::margin + (gutter + column) * cells.CellWidth() + 1,
            row * cells.RowHeight() + cells.RowHeight() / 2};
  }

  void Mouse(QEvent::Type type, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), button, buttons, modifiers);
    event.setTimestamp(clicksAt++);
    QCoreApplication::sendEvent(view.viewport(), &event);
  }
  void Press(QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    Mouse(QEvent::MouseButtonPress, at, modifiers);
  }
  void Release(QPoint at) { Mouse(QEvent::MouseButtonRelease, at); }
  void Drag(QPoint from, QPoint to) {
    Press(from);
    Mouse(QEvent::MouseMove, to);
    Release(to);
  }
  void DoubleClick(QPoint at) {
    Press(at);
    Release(at);
    Mouse(QEvent::MouseButtonDblClick, at);
    Release(at);
  }
  void TripleClick(QPoint at) {
    DoubleClick(at);
    Press(at);
    Release(at);
  }

  QString LineInRow(int row) {
    clicksAt += 10'000;
    TripleClick(At(row, 0));
    return view.SelectedText();
  }

  // The pixels that are as good as this colour.
  int Pixels(QColor color) {
    const QImage image = view.viewport()->grab().toImage();
    int count = 0;
    for (int y = 2; y < image.height() - 2; ++y) {
      for (int x = 2; x < image.width() - 2; ++x) {
        const QColor pixel = image.pixelColor(x, y);
        count += qAbs(pixel.red() - color.red()) + qAbs(pixel.green() - color.green()) +
                     qAbs(pixel.blue() - color.blue()) <
                 60;
      }
    }
    return count;
  }

  static constexpr int gutter = 2;  // cells, without times

  VirtualLoop loop;
  DisplayControls display{loop};
  ReceivedTextView view;
  GlyphTable cells{view.font()};
  int added = 0;
  quint64 clicksAt = 1;
};

}  // namespace quarlin
