// SPDX-License-Identifier: GPL-3.0-or-later
// The table of errors. It stays at its end while that is in sight; a click on a row, or Enter, asks for its
// place in the traffic.
#pragma once

#include <QHeaderView>
#include <QTableView>
#include <cstdint>
#include <optional>
#include <vector>

#include "ui/qt/error_table_model.h"

namespace quarlin {

class ErrorTable : public QTableView {
  Q_OBJECT

 public:
  explicit ErrorTable(QWidget* parent = nullptr);

  // `rows` outlives the table.
  void Show(const ErrorRows& rows);
  void SetKind(std::optional<ErrorKind> kind);

  // To be called when the rows have changed, at most once a frame.
  void Refresh();

  int RowHeight() const { return verticalHeader()->defaultSectionSize(); }

  // The selected rows, or all where none is, as a spreadsheet takes them. Returns how many.
  int Copy() const;

 signals:
  void lineWanted(std::uint64_t line);
  void clearRequested();
  void shownChanged(bool shown);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void SetUpRows();
  void ShareWidth();
  void ColumnResized();
  void ShowPlace(const QModelIndex& index);
  std::vector<int> ChosenRows() const;

  ErrorTableModel model_;
  double shareOfExpected_ = 0.45;  // of the width that it has together with what came
  bool sharing_ = false;           // columns are being resized by us, not by the user
};

}  // namespace quarlin
