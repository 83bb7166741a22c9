// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/quick_page.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>

#include "transmit/by_hand.h"
#include "ui/qt/widget_text.h"

namespace quarlin {

QuickPage::QuickPage(QWidget& window, FrmMain& frm)
    : window_(window),
      frm_(frm),
      quick_(frm.Hand().quick),
      table_(*window.findChild<QTableView*>("quickTable")),
      model_(quick_),
      pacer_([this] { Refresh(); }) {
  SetUpTable();
  WireButtons();
  connect(&model_, &QuickModel::keyRefused, this,
          [this](const QString& words) { frm_.Status().Say(BytesOf(words)); });
  quick_.OnChanged = [this] { pacer_.Request(); };
  ShowKeys();
}

QuickPage::~QuickPage() {
  quick_.OnChanged = nullptr;
}

void QuickPage::SetUpTable() {
  table_.setModel(&model_);
  table_.installEventFilter(this);
  QHeaderView& header = *table_.horizontalHeader();
  header.setSectionResizeMode(QHeaderView::Interactive);
  const QFontMetrics metrics = table_.fontMetrics();
  const std::pair<int, const char*> widths[] = {
      {QuickModel::Send, "▶"},          {QuickModel::Name, "Zero point"}, {QuickModel::Command, "READ[CNT1]"},
      {QuickModel::Answer, "12345 ms"}, {QuickModel::Key, "Ctrl+F2"},     {QuickModel::Wait, "☑☑ 60000"},
      {QuickModel::Every, "☑☑ 60000"}};
  for (const auto& [column, widest] : widths) {
    header.resizeSection(column, metrics.horizontalAdvance(QString::fromUtf8(widest)) + 12);
  }
  table_.verticalHeader()->hide();
  table_.verticalHeader()->setDefaultSectionSize(metrics.height() + 8);
  connect(&table_, &QTableView::clicked, this, [this](const QModelIndex& index) {
    if (index.column() == QuickModel::Send) Fire(index.row());
  });
}

void QuickPage::WireButtons() {
  const std::pair<const char*, std::function<void()>> buttons[] = {
      {"quickSendButton", [this] { Fire(Current()); }}, {"quickAddButton", [this] { Add(); }},
      {"quickRemoveButton", [this] { Remove(); }},      {"quickUpButton", [this] { MoveBy(-1); }},
      {"quickDownButton", [this] { MoveBy(1); }},
  };
  for (const auto& [name, action] : buttons) {
    connect(window_.findChild<QAbstractButton*>(name), &QAbstractButton::clicked, this, action);
  }
}

bool QuickPage::eventFilter(QObject*, QEvent* event) {
  return event->type() == QEvent::KeyPress && PressedInTable(*static_cast<QKeyEvent*>(event));
}

// The Enter that ends the editing of a field comes by here, too.
bool QuickPage::PressedInTable(const QKeyEvent& event) {
  if (!table_.hasFocus()) return false;
  if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
    Fire(Current());
  } else if (event.key() == Qt::Key_Delete) {
    Remove();
  } else {
    return false;
  }
  return true;
}

void QuickPage::Refresh() {
  const int row = Current();
  const int column = table_.currentIndex().column();
  model_.Refresh();
  const int last = model_.rowCount() - 1;
  const bool lost = !table_.currentIndex().isValid();
  if (lost && row >= 0 && last >= 0) table_.setCurrentIndex(model_.index(std::min(row, last), column));
  ShowKeys();
}

void QuickPage::ShowKeys() {
  std::vector<std::string> keys;
  for (std::size_t row = 0; row < quick_.Rows().size(); ++row) keys.push_back(quick_.KeyOf(row));
  if (keys == keys_) return;
  keys_ = std::move(keys);
  shortcuts_.clear();
  for (std::size_t row = 0; row < keys_.size(); ++row) {
    if (keys_[row].empty()) continue;
    const QKeySequence sequence(ShownText(keys_[row]), QKeySequence::PortableText);
    if (const QString owner = OwnerOf(sequence); !owner.isEmpty()) {
      const QString words = tr("the key %1 of a quick send is already that of \"%2\"");
      frm_.Status().Say(BytesOf(words.arg(sequence.toString(), owner)));
      continue;
    }
    shortcuts_.push_back(std::make_unique<QShortcut>(sequence, &window_));
    connect(shortcuts_.back().get(), &QShortcut::activated, this,
            [this, row] { Fire(static_cast<int>(row)); });
  }
}

// Of two that have the same key neither would work, so the first keeps it: a menu, then the upper row. Empty
// where nobody has it.
QString QuickPage::OwnerOf(const QKeySequence& keys) const {
  for (const QAction* action : window_.findChildren<QAction*>()) {
    if (action->shortcuts().contains(keys)) return WithoutMnemonic(action->text());
  }
  for (const auto& shortcut : shortcuts_) {
    if (shortcut->key() == keys) return tr("another row");
  }
  return {};
}

void QuickPage::Fire(int row) {
  if (row >= 0) return quick_.Fire(static_cast<std::size_t>(row));
  frm_.Status().Say("choose a row first, or add one");
}

void QuickPage::Add() {
  const auto* command = window_.findChild<QComboBox*>("CBOSEND");
  QuickSend row;
  row.command = BytesOf(command->currentText());
  row.name = row.command.empty() ? "New" : row.command;
  quick_.Add(std::move(row));
  Refresh();
  const QModelIndex added = model_.index(model_.rowCount() - 1, QuickModel::Name);
  if (!added.isValid()) return;
  table_.setFocus();
  table_.setCurrentIndex(added);
  table_.edit(added);
}

void QuickPage::Remove() {
  if (Current() >= 0) return quick_.Remove(static_cast<std::size_t>(Current()));
  frm_.Status().Say("choose the row first that is to go");
}

void QuickPage::MoveBy(int rows) {
  const int to = Current() + rows;
  if (Current() < 0 || to < 0 || to >= model_.rowCount()) return;
  // In front of the one that stands behind the new place.
  quick_.Move(static_cast<std::size_t>(Current()), static_cast<std::size_t>(rows > 0 ? to + 1 : to));
  Refresh();
  table_.setCurrentIndex(model_.index(to, table_.currentIndex().column()));
}

}  // namespace quarlin
