// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/layout_keeper.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalBlocker>
#include <QTableView>
#include <QTreeView>
#include <algorithm>
#include <functional>
#include <set>

namespace quarlin {
namespace {

constexpr int farthest = 100'000;  // from the desktop's corner, and the largest size of anything
constexpr int hiddenColumn = -1;   // in the place of its width
constexpr const char* keptProperty = "kept";

std::string NameOf(const QObject& part) {
  return part.objectName().toStdString();
}

// An open dialog is among the children of its window, and a window of its own.
bool StandsIn(const QWidget& window, const QObject& part) {
  const QObject* widget = part.isWidgetType() ? &part : part.parent();
  return widget == nullptr || !widget->isWidgetType() ||
         static_cast<const QWidget*>(widget)->window() == window.window();
}

// The parts of that kind that have a name of their own; the toolkit names its own ones "qt_".
template <typename Part>
void ForEach(const QWidget& window, const std::function<void(Part&)>& use) {
  for (Part* part : window.findChildren<Part*>()) {
    const QString name = part->objectName();
    if (!name.isEmpty() && !name.startsWith("qt_") && StandsIn(window, *part)) use(*part);
  }
}

// The columns of tables and trees, under the name of the table.
void ForEachHeader(const QWidget& window, const std::function<void(QHeaderView&, const std::string&)>& use) {
  ForEach<QTableView>(window, [&](QTableView& table) { use(*table.horizontalHeader(), NameOf(table)); });
  ForEach<QTreeView>(window, [&](QTreeView& tree) { use(*tree.header(), NameOf(tree)); });
}

void ForEachKeptAction(const QWidget& window, const std::function<void(QAction&)>& use) {
  ForEach<QAction>(window, [&](QAction& action) {
    if (action.isCheckable() && action.property(keptProperty).toBool()) use(action);
  });
}

// The title of a page without its mnemonic.
QString TitleOf(const QTabWidget& tabs, int page) {
  return tabs.tabText(page).remove('&');
}

Place PlaceOf(const QRect& rect) {
  return {rect.x(), rect.y(), rect.width(), rect.height()};
}

// A table that shares its room among the columns is told once, when all of them have their width: after the
// first one it would share by the old widths of the others.
void RestoreWidths(QHeaderView& header, const std::vector<int>& widths) {
  const int count = header.count();
  const int before = header.sectionSize(0);
  for (int i = 0; i < count; ++i) {
    const int width = widths[static_cast<std::size_t>(i)];
    const QSignalBlocker blocker(header);
    header.setSectionHidden(i, width == hiddenColumn);
    if (width > 0) header.resizeSection(i, std::max(width, header.minimumSectionSize()));
  }
  if (header.hiddenSectionCount() == count) header.setSectionHidden(0, false);
  emit header.sectionResized(0, before, header.sectionSize(0));
}

}  // namespace

std::vector<Place> UsableScreens() {
  std::vector<Place> screens;
  const QScreen* main = QGuiApplication::primaryScreen();
  if (main != nullptr) screens.push_back(PlaceOf(main->availableGeometry()));
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen != main) screens.push_back(PlaceOf(screen->availableGeometry()));
  }
  return screens;
}

bool LayoutKeeper::Keep(QWidget& window, const std::string& section) {
  const bool placed = RestorePlace(window, section);
  RestoreParts(window, section);
  kept_.push_back({&window, section});
  window.installEventFilter(this);
  ForEach<QSplitter>(window, [&](QSplitter& splitter) {
    connect(&splitter, &QSplitter::splitterMoved, this,
            [this, &splitter, section] { RememberSplitter(splitter, section); });
  });
  return placed;
}

bool LayoutKeeper::RestorePlace(QWidget& window, const std::string& section) {
  const auto numbers = layout_.Numbers(section, "Place", -farthest, farthest);
  if (!numbers || numbers->size() != 4) return false;
  const Place wanted{(*numbers)[0], (*numbers)[1], (*numbers)[2], (*numbers)[3]};
  if (wanted.width <= 0 || wanted.height <= 0) return false;
  const Place place = BroughtBack(wanted, UsableScreens());
  window.setGeometry(place.x, place.y, place.width, place.height);
  if (layout_.Value(section, "State") == "maximised") {
    window.setWindowState(window.windowState() | Qt::WindowMaximized);
  }
  return true;
}

void LayoutKeeper::RestoreParts(QWidget& window, const std::string& section) {
  ForEach<QSplitter>(window, [&](QSplitter& splitter) { RestoreSplitter(splitter, section); });
  ForEach<QTabWidget>(window, [&](QTabWidget& tabs) { RestoreTabs(tabs, section); });
  ForEachHeader(window,
                [&](QHeaderView& header, const std::string& name) { RestoreColumns(header, section, name); });
  ForEachKeptAction(window, [&](QAction& action) {
    const auto checked = layout_.Numbers(section, NameOf(action), 0, 1);
    if (checked && checked->size() == 1) action.setChecked(checked->front() == 1);
  });
}

void LayoutKeeper::RestoreSplitter(QSplitter& splitter, const std::string& section) {
  const auto sizes = layout_.Numbers(section, NameOf(splitter), 1, farthest);
  if (sizes && static_cast<int>(sizes->size()) == splitter.count()) {
    splitter.setSizes(QList<int>(sizes->begin(), sizes->end()));
  }
}

void LayoutKeeper::RestoreTabs(QTabWidget& tabs, const std::string& section) const {
  const QString title = QString::fromStdString(layout_.Value(section, NameOf(tabs)));
  for (int page = 0; page < tabs.count(); ++page) {
    if (TitleOf(tabs, page) == title) tabs.setCurrentIndex(page);
  }
}

// A table that has other columns by now keeps its own.
void LayoutKeeper::RestoreColumns(QHeaderView& header, const std::string& section,
                                  const std::string& name) const {
  const int count = header.count();
  const auto widths = layout_.Numbers(section, name, hiddenColumn, farthest);
  if (!widths || static_cast<int>(widths->size()) != count) return;
  RestoreWidths(header, *widths);
  const auto order = layout_.Numbers(section, name + ".order", 0, count - 1);
  if (order && static_cast<int>(std::set<int>(order->begin(), order->end()).size()) == count) {
    for (int i = 0; i < count; ++i) {
      header.moveSection(header.visualIndex((*order)[static_cast<std::size_t>(i)]), i);
    }
  }
  const auto sort = layout_.Numbers(section, name + ".sort", 0, count);
  if (sort && sort->size() == 2 && header.isSortIndicatorShown() && sort->front() < count) {
    header.setSortIndicator(sort->front(), sort->back() == 1 ? Qt::DescendingOrder : Qt::AscendingOrder);
  }
}

bool LayoutKeeper::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::Hide && !event->spontaneous()) {
    for (const Kept& kept : kept_) {
      if (kept.window == window) Remember(kept);
    }
  }
  return false;
}

void LayoutKeeper::Remember() {
  std::erase_if(kept_, [](const Kept& kept) { return kept.window.isNull(); });
  for (const Kept& kept : kept_) {
    if (kept.window->isVisible()) Remember(kept);  // another was remembered when it closed
  }
}

void LayoutKeeper::Remember(const Kept& kept) {
  const QWidget& window = *kept.window;
  const std::string& section = kept.section;
  const QRect rect = window.isMaximized() || window.isFullScreen() || window.isMinimized()
                         ? window.normalGeometry()
                         : window.geometry();
  if (rect.isValid()) {
    layout_.Set(section, "Place", NumbersText({rect.x(), rect.y(), rect.width(), rect.height()}));
  }
  layout_.Set(section, "State", window.windowState() & Qt::WindowMaximized ? "maximised" : "normal");
  ForEach<QSplitter>(window, [&](QSplitter& splitter) { RememberSplitter(splitter, section); });
  ForEach<QTabWidget>(window, [&](QTabWidget& tabs) {
    layout_.Set(section, NameOf(tabs), TitleOf(tabs, tabs.currentIndex()).toStdString());
  });
  ForEachHeader(
      window, [&](QHeaderView& header, const std::string& name) { RememberColumns(header, section, name); });
  ForEachKeptAction(
      window, [&](QAction& action) { layout_.Set(section, NameOf(action), action.isChecked() ? "1" : "0"); });
}

// A part that is hidden has no size; the sizes from when all were shown stay.
void LayoutKeeper::RememberSplitter(const QSplitter& splitter, const std::string& section) {
  const QList<int> sizes = splitter.sizes();
  if (sizes.contains(0)) return;
  layout_.Set(section, NameOf(splitter), NumbersText({sizes.begin(), sizes.end()}));
}

void LayoutKeeper::RememberColumns(const QHeaderView& header, const std::string& section,
                                   const std::string& name) {
  if (header.count() == 0) return;
  std::vector<int> widths;
  std::vector<int> order;
  for (int i = 0; i < header.count(); ++i) {
    widths.push_back(header.isSectionHidden(i) ? hiddenColumn : header.sectionSize(i));
    order.push_back(header.logicalIndex(i));
  }
  layout_.Set(section, name, NumbersText(widths));
  layout_.Set(section, name + ".order", NumbersText(order));
  if (!header.isSortIndicatorShown()) return;
  const int downwards = header.sortIndicatorOrder() == Qt::DescendingOrder ? 1 : 0;
  layout_.Set(section, name + ".sort", NumbersText({header.sortIndicatorSection(), downwards}));
}

}  // namespace quarlin
