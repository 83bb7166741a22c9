// SPDX-License-Identifier: GPL-3.0-or-later
// Brings windows back to where they stood and to how they showed things, and takes it down for the next
// start. A window needs no code for that, only object names: of a splitter its sizes are kept, of tabs the
// page in front, of a table its columns, of an action with the property "kept" whether it is checked. The
// place of the window and these stand in position.ini in a section named like the window:
//
//   [frmMain]
//   Place=100,60,1400,900        left, top, width, height without the desktop's frame
//   State=maximised              or normal
//   sides=1040,352               a splitter
//   tabs=Receive                 a page by its title
//   errorTable=80,50,-1          widths of columns, -1 for one that is hidden
//   errorTable.order=0,2,1       the columns from left to right
//   errorTable.sort=2,1          the column and 1 for downwards
//   actionHex=1
#pragma once

#include <QAction>
#include <QHeaderView>
#include <QObject>
#include <QPointer>
#include <QSplitter>
#include <QTabWidget>
#include <QWidget>
#include <string>
#include <vector>

#include "config/window_layout.h"
#include "config/window_place.h"

namespace quarlin {

class LayoutKeeper : public QObject {
  Q_OBJECT

 public:
  // The layout outlives the keeper.
  explicit LayoutKeeper(WindowLayout& layout) : layout_(layout) {}

  // To be called when the window has all its parts and is not shown yet. It goes to where it stood, or stays
  // where it is if nothing is known of that; false then. It is followed until its end.
  bool Keep(QWidget& window, const std::string& section);

  // Takes down how the windows that still live are now.
  void Remember();

 protected:
  // A window that closes is remembered as it was last.
  bool eventFilter(QObject* window, QEvent* event) override;

 private:
  struct Kept {
    QPointer<QWidget> window;
    std::string section;
  };

  bool RestorePlace(QWidget& window, const std::string& section);
  void RestoreParts(QWidget& window, const std::string& section);
  void RestoreSplitter(QSplitter& splitter, const std::string& section);
  void RestoreTabs(QTabWidget& tabs, const std::string& section) const;
  void RestoreColumns(QHeaderView& header, const std::string& section, const std::string& name) const;

  void Remember(const Kept& kept);
  void RememberSplitter(const QSplitter& splitter, const std::string& section);
  void RememberColumns(const QHeaderView& header, const std::string& section, const std::string& name);

  WindowLayout& layout_;
  std::vector<Kept> kept_;
};

// The parts of the screens that windows may use, the main screen first.
std::vector<Place> UsableScreens();

}  // namespace quarlin
