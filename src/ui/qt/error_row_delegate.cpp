// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/error_row_delegate.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>

#include "ui/qt/error_table_model.h"
#include "ui/qt/text_colors.h"

namespace quarlin {
namespace {

constexpr int margin = 4;
constexpr int markOpacity = 70;  // of 255

bool IsColumn(const QModelIndex& index, ErrorColumn column) {
  return index.column() == static_cast<int>(column);
}

bool IsWire(const QModelIndex& index) {
  return IsColumn(index, ErrorColumn::Expected) || IsColumn(index, ErrorColumn::Got);
}

// Each cell paints its part of the heading, so that it runs on under all columns.
void PaintHeading(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QRect row(0, option.rect.top(), option.rect.right() + 1, option.rect.height());
  QFont font = option.font;
  font.setBold(true);
  painter.setFont(font);
  painter.setClipRect(option.rect);
  if (!option.state.testFlag(QStyle::State_Selected)) painter.fillRect(option.rect, option.palette.button());
  painter.drawText(QRect(margin, row.top(), 1 << 14, row.height()), Qt::AlignVCenter | Qt::TextSingleLine,
                   index.siblingAtColumn(0).data().toString());
}

// Returns where the text ended.
int PaintText(QPainter& painter, const QRect& room, const QString& text) {
  painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text);
  return room.left() + painter.fontMetrics().horizontalAdvance(text);
}

void PaintDifference(QPainter& painter, const QRect& room, const QString& text, int differsAt,
                     const QColor& red) {
  const int from = PaintText(painter, room, text.left(differsAt));
  const QString different = text.mid(differsAt);
  // Where one text ends and the other goes on, a narrow mark stands for what is missing.
  const int width = different.isEmpty() ? 3 : painter.fontMetrics().horizontalAdvance(different);
  QColor mark = red;
  mark.setAlpha(markOpacity);
  painter.fillRect(QRect(from, room.top() + 1, width, room.height() - 2), mark);
  PaintText(painter, room.adjusted(from - room.left(), 0, 0, 0), different);
}

}  // namespace

void ErrorRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& given,
                             const QModelIndex& index) const {
  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  const QString text = option.text;
  option.text.clear();
  option.state &= ~QStyle::State_HasFocus;  // the whole row is marked
  QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &option, painter, option.widget);

  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const QColor base = option.palette.color(selected ? QPalette::Highlight : QPalette::Base);
  const QColor red = ReadableColor(colors::red, base);
  const QColor plain = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
  painter->save();
  painter->setPen(plain);
  painter->setFont(option.font);
  const QRect room = option.rect.adjusted(margin, 0, -margin, 0);
  if (index.data(ErrorTableModel::HeadingRole).toBool()) {
    PaintHeading(*painter, option, index);
  } else {
    painter->setClipRect(room);
    if (IsWire(index)) painter->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    if (IsColumn(index, ErrorColumn::What) && !selected) painter->setPen(red);
    const int differsAt = index.data(ErrorTableModel::DifferenceRole).toInt();
    if (differsAt >= 0) {
      PaintDifference(*painter, room, text, differsAt, red);
    } else {
      painter->drawText(room, static_cast<int>(option.displayAlignment) | Qt::TextSingleLine,
                        painter->fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
    }
  }
  painter->restore();
}

}  // namespace quarlin
