// SPDX-License-Identifier: GPL-3.0-or-later
// Paints the cells of the error table: a heading over the whole width, the kind of an error in red, and two
// texts that were compared with a mark from where they differ.
#pragma once

#include <QStyledItemDelegate>

namespace quarlin {

class ErrorRowDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quarlin
