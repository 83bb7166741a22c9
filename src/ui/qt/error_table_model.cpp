// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/error_table_model.h"

#include <QTextDocument>
#include <algorithm>

#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

constexpr int alignment = Qt::AlignVCenter;

bool IsNumber(ErrorColumn column) {
  return column == ErrorColumn::Number || column == ErrorColumn::Latency;
}

bool IsCompared(ErrorColumn column) {
  return column == ErrorColumn::Expected || column == ErrorColumn::Got;
}

// Everything that is known of it, also what the columns have no room for.
QString ToolTipOf(const ErrorRow& row) {
  if (row.IsHeading()) return Qt::convertFromPlainText(ShownText(row.heading));
  QString text = ShownText(DateTimeText(row.at) + "  " + std::string(ErrorKindName(*row.kind)));
  const std::pair<const char*, const std::string*> parts[] = {
      {QT_TRANSLATE_NOOP("quarlin::ErrorTableModel", "Request"), &row.request},
      {QT_TRANSLATE_NOOP("quarlin::ErrorTableModel", "Expected"), &row.expected},
      {QT_TRANSLATE_NOOP("quarlin::ErrorTableModel", "Got"), &row.got}};
  for (const auto& [title, part] : parts) {
    if (part->empty()) continue;
    text += QString("\n%1: %2").arg(ErrorTableModel::tr(title), ShownText(*part));
  }
  return Qt::convertFromPlainText(text);
}

}  // namespace

void ErrorTableModel::Show(const ErrorRows& rows) {
  rows_ = &rows;
  SetKind(kind_);
}

void ErrorTableModel::SetKind(std::optional<ErrorKind> kind) {
  beginResetModel();
  kind_ = kind;
  shown_.clear();
  next_ = 0;
  if (rows_ != nullptr) Collect(shown_);
  endResetModel();
}

void ErrorTableModel::Collect(std::deque<std::uint64_t>& into) {
  for (next_ = std::max(next_, rows_->FirstRow()); next_ < rows_->EndRow(); ++next_) {
    if (Wants(rows_->Row(next_))) into.push_back(next_);
  }
}

int ErrorTableModel::Refresh() {
  if (rows_ == nullptr) return 0;
  const auto kept = std::lower_bound(shown_.begin(), shown_.end(), rows_->FirstRow());
  const int left = static_cast<int>(kept - shown_.begin());
  if (left > 0) {
    beginRemoveRows({}, 0, left - 1);
    shown_.erase(shown_.begin(), kept);
    endRemoveRows();
  }
  std::deque<std::uint64_t> added;
  Collect(added);
  if (!added.empty()) {
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
    shown_.insert(shown_.end(), added.begin(), added.end());
    endInsertRows();
  }
  return left;
}

const ErrorRow* ErrorTableModel::Row(int row) const {
  const std::uint64_t number = shown_[static_cast<std::size_t>(row)];
  return number < rows_->FirstRow() ? nullptr : &rows_->Row(number);
}

QString ErrorTableModel::Text(const std::vector<int>& rows) const {
  QString text = ShownText(ErrorTitleLine()) + '\n';
  for (const int number : rows) {
    if (const ErrorRow* row = Row(number)) text += ShownText(ErrorLine(*row)) + '\n';
  }
  return text;
}

int ErrorTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ErrorTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns;
}

QVariant ErrorTableModel::data(const QModelIndex& index, int role) const {
  const ErrorRow* found = index.isValid() ? Row(index.row()) : nullptr;
  if (found == nullptr) return {};
  const ErrorRow& row = *found;
  const auto column = static_cast<ErrorColumn>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return ShownText(ErrorCell(row, column));
    case Qt::ToolTipRole:
      return ToolTipOf(row);
    case Qt::TextAlignmentRole:
      return static_cast<int>(alignment | (IsNumber(column) ? Qt::AlignRight : Qt::AlignLeft));
    case HeadingRole:
      return row.IsHeading();
    case DifferenceRole:
      return row.differsAt && IsCompared(column) ? static_cast<int>(*row.differsAt) : -1;
    default:
      return {};
  }
}

QVariant ErrorTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  const auto column = static_cast<ErrorColumn>(section);
  if (role == Qt::DisplayRole) return ShownText(ErrorColumnTitle(column));
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(alignment | (IsNumber(column) ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (role == Qt::ToolTipRole && column == ErrorColumn::Latency) {
    return tr("Milliseconds from the end of sending to the complete answer");
  }
  if (role == Qt::ToolTipRole && column == ErrorColumn::Number) {
    return tr("Number of the exchange in its run, as in the report");
  }
  return {};
}

}  // namespace quarlin
