// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of errors for a table view: those of one kind or all, brought up to date in batches.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "testmodes/error_rows.h"

namespace quarlin {

class ErrorTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int columns = 6;  // all of ErrorColumn but the request, which the tool tip tells

  // What the view asks of a cell beside its text.
  enum Role { HeadingRole = Qt::UserRole, DifferenceRole };  // bool; where texts begin to differ, else -1

  using QAbstractTableModel::QAbstractTableModel;

  // `rows` outlives the model, or its next Show.
  void Show(const ErrorRows& rows);

  // Headings are shown with every kind.
  void SetKind(std::optional<ErrorKind> kind);

  // Takes over what has changed since the last time, in at most two steps. Returns how many rows left at the
  // top.
  int Refresh();

  // Nothing for one that has left since the last Refresh.
  const ErrorRow* Row(int row) const;

  // The rows, the columns between tabulators, below their titles.
  QString Text(const std::vector<int>& rows) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  bool Wants(const ErrorRow& row) const { return row.IsHeading() || !kind_ || row.kind == kind_; }
  void Collect(std::deque<std::uint64_t>& into);

  const ErrorRows* rows_ = nullptr;
  std::optional<ErrorKind> kind_;
  std::deque<std::uint64_t> shown_;  // their numbers
  std::uint64_t next_ = 0;           // the first that has not been looked at
};

}  // namespace quarlin
