// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/debug_values.h"

#include <QHeaderView>
#include <QPointer>

namespace quarlin {
namespace {

enum Column { nameColumn, valueColumn, typeColumn };

QString TextOf(const std::u16string& text) {
  return QString::fromStdU16String(text);
}

QString PathOf(const QTreeWidgetItem* item) {
  return item == nullptr ? QString() : PathOf(item->parent()) + '\n' + item->text(nameColumn);
}

}  // namespace

// A line, with the value that its parts are read from, or from number `more` on.
class DebugValues::Item : public QTreeWidgetItem {
 public:
  vbs::Value value;
  std::size_t more = 0;
};

DebugValues::DebugValues(ScriptDebugger& debugger, QWidget* parent)
    : QTreeWidget(parent), debugger_(debugger) {
  setObjectName("debugValues");
  setAccessibleName(tr("Variables and watches"));
  setToolTip(tr("What the script holds where it stands; values that the last step changed are bold"));
  setHeaderLabels({tr("Name"), tr("Value"), tr("Type")});
  setUniformRowHeights(true);
  header()->setSectionResizeMode(nameColumn, QHeaderView::ResizeToContents);
  header()->setSectionResizeMode(valueColumn, QHeaderView::Stretch);
  header()->setSectionResizeMode(typeColumn, QHeaderView::Interactive);
  header()->resizeSection(typeColumn,
                          fontMetrics().horizontalAdvance("Dictionary"));  // what is longer is elided
  header()->setStretchLastSection(false);
  connect(this, &QTreeWidget::itemExpanded, this, &DebugValues::Open);
  connect(this, &QTreeWidget::itemCollapsed, this,
          [this](QTreeWidgetItem* item) { opened_.remove(PathOf(item)); });
  // The line goes away, so what tells of it must have returned.
  for (const auto signal : {&QTreeWidget::itemActivated, &QTreeWidget::itemClicked}) {
    connect(this, signal, this, &DebugValues::ShowMore, Qt::QueuedConnection);
  }
}

void DebugValues::ShowCall(std::size_t call) {
  const vbs::CallView view = debugger_.CallAt(call);
  call_ = call;
  procedure_ = TextOf(view.procedure);
  setEnabled(true);
  const QSignalBlocker quiet(this);
  clear();
  if (!watches_.isEmpty()) FillWatches();
  if (!view.procedure.empty()) Group(tr("Locals of %1").arg(procedure_), debugger_.Locals(call));
  Group(tr("Globals"), debugger_.Globals());
}

void DebugValues::LetGo() {
  for (QTreeWidgetItemIterator each(this); *each != nullptr; ++each) static_cast<Item*>(*each)->value = {};
  if (!now_.isEmpty()) before_ = std::exchange(now_, {});
  setEnabled(false);
}

QTreeWidgetItem* DebugValues::Group(const QString& title, const std::vector<ShownValue>& rows) {
  auto* group = new Item;
  group->setText(nameColumn, title);
  addTopLevelItem(group);
  group->setFirstColumnSpanned(true);
  group->setExpanded(true);
  for (const ShownValue& shown : rows) Add(group, shown);
  return group;
}

void DebugValues::FillWatches() {
  std::vector<ShownValue> rows;
  for (const QString& watch : watches_) rows.push_back(debugger_.Evaluate(call_, watch.toStdU16String()));
  Group(tr("Watches"), rows);
}

DebugValues::Item* DebugValues::Add(QTreeWidgetItem* parent, const ShownValue& shown) {
  auto* item = new Item;
  item->setText(nameColumn, TextOf(shown.name));
  item->setText(valueColumn, TextOf(shown.text));
  item->setText(typeColumn, TextOf(shown.type));
  item->setToolTip(valueColumn, item->text(valueColumn));
  item->value = shown.value;
  if (shown.opens) item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  if (shown.type.empty()) item->setForeground(valueColumn, palette().brush(QPalette::PlaceholderText));
  parent->addChild(item);
  const QString path = PathOf(item);
  const auto before = before_.constFind(path);
  now_.insert(path, item->text(valueColumn));
  if (before != before_.constEnd() && *before != item->text(valueColumn)) {
    QFont bold = font();
    bold.setBold(true);
    item->setFont(valueColumn, bold);
  }
  if (shown.opens && opened_.contains(path)) {
    AddParts(item, item->value, 0);
    item->setExpanded(true);
  }
  return item;
}

void DebugValues::AddParts(QTreeWidgetItem* parent, const vbs::Value& value, std::size_t first) {
  const ShownParts parts = PartsOf(value, first);
  for (const ShownValue& shown : parts.rows) Add(parent, shown);
  if (!parts.more) return;
  auto* more = new Item;
  more->setText(nameColumn, tr("more\u2026"));
  more->setToolTip(nameColumn, tr("Shows the next %1").arg(shownAtOnce));
  more->value = value;
  more->more = first + shownAtOnce;
  parent->addChild(more);
}

void DebugValues::Open(QTreeWidgetItem* item) {
  opened_.insert(PathOf(item));
  if (item->childCount() == 0 && debugger_.Stands()) AddParts(item, static_cast<Item*>(item)->value, 0);
}

void DebugValues::ShowMore() {
  auto* row = static_cast<Item*>(currentItem());
  if (row == nullptr || row->more == 0 || !debugger_.Stands()) return;
  QTreeWidgetItem* parent = row->parent();
  const vbs::Value value = row->value;
  const std::size_t first = row->more;
  delete row;
  AddParts(parent, value, first);
}

void DebugValues::AddWatch(const QString& expression) {
  const QString watch = expression.trimmed();
  if (watch.isEmpty() || watches_.contains(watch)) return;
  watches_.append(watch);
  if (debugger_.Stands()) ShowCall(call_);
}

void DebugValues::RemoveSelectedWatch() {
  const QTreeWidgetItem* chosen = currentItem();
  if (chosen == nullptr || !watches_.removeOne(chosen->text(nameColumn))) return;
  if (debugger_.Stands()) {
    ShowCall(call_);
  } else {
    delete chosen;
  }
}

}  // namespace quarlin
