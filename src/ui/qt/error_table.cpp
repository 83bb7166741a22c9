// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/error_table.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <numeric>

#include "base/scope_flag.h"
#include "ui/qt/error_row_delegate.h"

namespace quarlin {
namespace {

constexpr int narrowest = 60;  // pixels, of the two columns that share the rest

struct Width {
  ErrorColumn column;
  const char* widest;
};
constexpr std::array<Width, 4> widths{{{ErrorColumn::Time, "00:00:00.000"},
                                       {ErrorColumn::Number, "0000000"},
                                       {ErrorColumn::What, "string not equal"},
                                       {ErrorColumn::Latency, "000000.0"}}};

constexpr int expectedColumn = static_cast<int>(ErrorColumn::Expected);
constexpr int gotColumn = static_cast<int>(ErrorColumn::Got);

}  // namespace

ErrorTable::ErrorTable(QWidget* parent) : QTableView(parent) {
  setModel(&model_);
  setItemDelegate(new ErrorRowDelegate(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setMinimumSectionSize(narrowest / 2);
  SetUpRows();
  connect(this, &QTableView::clicked, this, &ErrorTable::ShowPlace);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this, &ErrorTable::ColumnResized);
}

void ErrorTable::Show(const ErrorRows& rows) {
  model_.Show(rows);
}

void ErrorTable::SetKind(std::optional<ErrorKind> kind) {
  model_.SetKind(kind);
  scrollToBottom();
}

void ErrorTable::Refresh() {
  const QScrollBar& bar = *verticalScrollBar();
  const bool atEnd = bar.value() >= bar.maximum();
  const int before = bar.value();
  const int left = model_.Refresh();
  if (atEnd) {
    scrollToBottom();
  } else if (left > 0) {
    verticalScrollBar()->setValue(std::max(before - left, 0));
  }
  viewport()->update();  // a heading may have its verdict
}

std::vector<int> ErrorTable::ChosenRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  if (!rows.empty()) return rows;
  rows.resize(static_cast<std::size_t>(model_.rowCount()));
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

int ErrorTable::Copy() const {
  const std::vector<int> rows = ChosenRows();
  if (rows.empty()) return 0;  // what was copied before stays
  QApplication::clipboard()->setText(model_.Text(rows));
  return static_cast<int>(rows.size());
}

void ErrorTable::ShowPlace(const QModelIndex& index) {
  const ErrorRow* row = index.isValid() ? model_.Row(index.row()) : nullptr;
  if (row != nullptr) emit lineWanted(row->displayLine);
}

void ErrorTable::SetUpRows() {
  ensurePolished();
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  const ScopeFlag sharing(sharing_);
  for (const Width& width : widths) {
    setColumnWidth(static_cast<int>(width.column), fontMetrics().horizontalAdvance(width.widest) + 16);
  }
}

void ErrorTable::ShareWidth() {
  int rest = viewport()->width();
  for (const Width& width : widths) rest -= columnWidth(static_cast<int>(width.column));
  rest = std::max(rest, 2 * narrowest);
  const ScopeFlag sharing(sharing_);
  const int expected = std::clamp(static_cast<int>(rest * shareOfExpected_), narrowest, rest - narrowest);
  setColumnWidth(expectedColumn, expected);
  setColumnWidth(gotColumn, rest - expected);
}

void ErrorTable::ColumnResized() {
  if (sharing_) return;
  const int expected = columnWidth(expectedColumn);
  const int both = expected + columnWidth(gotColumn);
  shareOfExpected_ = static_cast<double>(expected) / both;
  ShareWidth();
}

void ErrorTable::showEvent(QShowEvent* event) {
  QTableView::showEvent(event);
  Refresh();
  scrollToBottom();
  if (!event->spontaneous()) emit shownChanged(true);
}

void ErrorTable::hideEvent(QHideEvent* event) {
  QTableView::hideEvent(event);
  if (isHidden()) emit shownChanged(false);  // minimised is not closed
}

void ErrorTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ShareWidth();
}

void ErrorTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
  SetUpRows();
  ShareWidth();
}

void ErrorTable::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (model_.rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, tr("No error so far"));
}

void ErrorTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    ShowPlace(currentIndex());
  } else {
    QTableView::keyPressEvent(event);
  }
}

void ErrorTable::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  menu.addAction(tr("Show in the traffic"), this, [this] { ShowPlace(currentIndex()); })
      ->setEnabled(currentIndex().isValid());
  menu.addAction(tr("Copy"), QKeySequence::Copy, this, [this] { Copy(); });
  menu.addSeparator();
  menu.addAction(tr("Clear the table"), this, &ErrorTable::clearRequested);
  menu.exec(event->globalPos());
}

}  // namespace quarlin
