// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/quick_model.h"

#include <QKeySequence>
#include <QMimeData>
#include <utility>

#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

const QString dragType = QStringLiteral("application/x-quarlin-quick-row");

struct ColumnRow {
  const char* title;
  const char* toolTip;
};

constexpr ColumnRow columnRows[] = {
    {"", QT_TRANSLATE_NOOP("quarlin::QuickModel", "A click sends the row; Enter sends the chosen one")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Name"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel", "What you call it")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Command"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel",
                       "What is sent, with macros; initial string and terminator are added")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Answer"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel", "How long the last answer took, where it is waited for")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Key"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel",
                       "Sends the row from anywhere, such as Ctrl+F2; the first nine have Ctrl+1 to Ctrl+9")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Wait, ms"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel",
                       "Checked: waits for an answer, at most so many milliseconds; 0 waits for ever")},
    {QT_TRANSLATE_NOOP("quarlin::QuickModel", "Every, ms"),
     QT_TRANSLATE_NOOP("quarlin::QuickModel",
                       "Checked: is sent again and again, every so many milliseconds, while no cycle runs")},
};

QuickModel::Column ColumnOf(const QModelIndex& index) {
  return static_cast<QuickModel::Column>(index.column());
}

std::size_t RowOf(const QModelIndex& index) {
  return static_cast<std::size_t>(index.row());
}

// A key that types a character would be gone from every text box.
bool TypesText(const QKeySequence& keys) {
  const int key = keys[0].key();
  const bool command =
      keys[0].keyboardModifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return !command && !(key >= Qt::Key_F1 && key <= Qt::Key_F35);
}

}  // namespace

QuickModel::QuickModel(QuickSends& quick) : quick_(quick), shown_(quick.Rows()) {}

// A reset would close an open editor with what is being typed there: Tab leads to the next field before the
// frame comes that shows the one before.
void QuickModel::Refresh() {
  if (shown_.size() != quick_.Rows().size()) {
    beginResetModel();
    shown_ = quick_.Rows();
    endResetModel();
    return;
  }
  ShowChanged();
  if (!shown_.empty()) {
    const int last = static_cast<int>(shown_.size()) - 1;
    emit dataChanged(index(0, Answer), index(last, Answer));
    emit dataChanged(index(0, Every), index(last, Every), {Qt::CheckStateRole});
  }
}

// Cell by cell, since what is told of a cell replaces what its editor holds.
void QuickModel::ShowChanged() {
  for (std::size_t row = 0; row < shown_.size(); ++row) {
    const QuickSend before = std::exchange(shown_[row], quick_.Rows()[row]);
    if (before == shown_[row]) continue;
    for (int column = 0; column < columns; ++column) {
      const bool same = EditedText(before, static_cast<Column>(column)) ==
                        EditedText(shown_[row], static_cast<Column>(column));
      const QModelIndex cell = index(static_cast<int>(row), column);
      if (!same) emit dataChanged(cell, cell);
    }
    const QModelIndex wait = index(static_cast<int>(row), Wait);
    if (before.waits != shown_[row].waits) emit dataChanged(wait, wait, {Qt::CheckStateRole});
  }
}

int QuickModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int QuickModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns;
}

QVariant QuickModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return QAbstractTableModel::headerData(section, orientation, role);
  if (role == Qt::DisplayRole) return tr(columnRows[section].title);
  if (role == Qt::ToolTipRole) return tr(columnRows[section].toolTip);
  return {};
}

QVariant QuickModel::data(const QModelIndex& index, int role) const {
  const std::size_t row = RowOf(index);
  // Between a change and the frame that shows it the table is behind.
  if (!index.isValid() || row >= quick_.Rows().size()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Text(row, ColumnOf(index));
    case Qt::EditRole:
      return EditedText(quick_.Rows()[row], ColumnOf(index));
    case Qt::CheckStateRole:
      return CheckState(row, ColumnOf(index));
    case Qt::ToolTipRole:
      return tr(columnRows[index.column()].toolTip);
    case Qt::AccessibleTextRole:
      return index.column() == Send ? tr("Send") : Text(row, ColumnOf(index));
    default:
      return {};
  }
}

QVariant QuickModel::Text(std::size_t row, Column column) const {
  switch (column) {
    case Send:
      return QStringLiteral("▶");
    case Key:
      return QKeySequence(ShownText(quick_.KeyOf(row))).toString(QKeySequence::NativeText);
    case Answer:
      return ShownText(quick_.ResultOf(row));
    default:
      return EditedText(quick_.Rows()[row], column);
  }
}

QVariant QuickModel::EditedText(const QuickSend& quick, Column column) {
  switch (column) {
    case Name:
      return EditText(quick.name);
    case Command:
      return EditText(quick.command);
    case Wait:
      return QString::number(quick.timeOut);
    case Every:
      return QString::number(quick.every);
    case Key:
      return ShownText(quick.key);
    default:
      return {};
  }
}

QVariant QuickModel::CheckState(std::size_t row, Column column) const {
  if (column != Wait && column != Every) return {};
  const bool checked = column == Wait ? quick_.Rows()[row].waits : quick_.Repeating(row);
  return checked ? Qt::Checked : Qt::Unchecked;
}

Qt::ItemFlags QuickModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::ItemIsDropEnabled;  // between the rows
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
  if (index.column() == Wait || index.column() == Every) flags |= Qt::ItemIsUserCheckable;
  if (index.column() != Send && index.column() != Answer) flags |= Qt::ItemIsEditable;
  return flags;
}

bool QuickModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const std::size_t row = RowOf(index);
  if (!index.isValid() || row >= quick_.Rows().size()) return false;
  if (role == Qt::CheckStateRole) {
    return SetChecked(row, ColumnOf(index), value.value<Qt::CheckState>() == Qt::Checked);
  }
  return role == Qt::EditRole && SetText(row, ColumnOf(index), value.toString());
}

bool QuickModel::SetChecked(std::size_t row, Column column, bool checked) {
  if (column == Every) {
    quick_.SetRepeating(row, checked);
    return true;
  }
  QuickSend changed = quick_.Rows()[row];
  changed.waits = checked;
  quick_.Set(row, std::move(changed));
  return true;
}

bool QuickModel::SetText(std::size_t row, Column column, const QString& text) {
  QuickSend changed = quick_.Rows()[row];
  switch (column) {
    case Name:
      changed.name = BytesOf(text);
      break;
    case Command:
      changed.command = BytesOf(text);
      break;
    case Wait:
      changed.timeOut = std::max(text.toInt(), 0);
      break;
    case Every:
      changed.every = std::max(text.toInt(), 0);
      break;
    case Key:
      if (!SetKey(changed, text)) return false;
      break;
    default:
      return false;
  }
  quick_.Set(row, std::move(changed));
  return true;
}

bool QuickModel::SetKey(QuickSend& row, const QString& text) {
  const QKeySequence keys(text.trimmed());
  const bool none = text.trimmed().isEmpty();
  if (!none && (keys.count() != 1 || keys[0].key() == Qt::Key_unknown)) {
    emit keyRefused(tr("\"%1\" is no key; write it as Ctrl+F2 or Alt+Shift+R").arg(text));
    return false;
  }
  if (!none && TypesText(keys)) {
    emit keyRefused(tr("\"%1\" alone could not be typed any more; take it with Ctrl or Alt").arg(text));
    return false;
  }
  row.key = none ? "" : keys.toString(QKeySequence::PortableText).toStdString();
  return true;
}

QStringList QuickModel::mimeTypes() const {
  return {dragType};
}

QMimeData* QuickModel::mimeData(const QModelIndexList& indexes) const {
  auto* data = new QMimeData;
  if (!indexes.isEmpty()) data->setData(dragType, QByteArray::number(indexes.front().row()));
  return data;
}

// False, so that the view does not take the row away where it was: that has happened.
bool QuickModel::dropMimeData(const QMimeData* data, Qt::DropAction, int row, int,
                              const QModelIndex& parent) {
  if (!data->hasFormat(dragType)) return false;
  const int from = data->data(dragType).toInt();
  const int to = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
  if (from >= 0) quick_.Move(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
  return false;
}

}  // namespace quarlin
