// SPDX-License-Identifier: GPL-3.0-or-later
// The quick sends as rows of a table that can be edited in place and dragged into another order.
#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "transmit/quick_sends.h"

namespace quarlin {

class QuickModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Send, Name, Command, Answer, Key, Wait, Every, columns };

  // `quick` outlives the model.
  explicit QuickModel(QuickSends& quick);

  // To be called when the rows, their states or their results have changed, at most once a frame.
  void Refresh();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                    const QModelIndex& parent) override;

 signals:
  // A key was typed that is none; the words are for the user.
  void keyRefused(const QString& words);

 private:
  QVariant Text(std::size_t row, Column column) const;
  static QVariant EditedText(const QuickSend& quick, Column column);
  void ShowChanged();
  QVariant CheckState(std::size_t row, Column column) const;
  bool SetChecked(std::size_t row, Column column, bool checked);
  bool SetText(std::size_t row, Column column, const QString& text);
  bool SetKey(QuickSend& row, const QString& text);

  QuickSends& quick_;
  std::vector<QuickSend> shown_;
};

}  // namespace quarlin
