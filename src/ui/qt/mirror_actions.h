// SPDX-License-Identifier: GPL-3.0-or-later
// Menu entries that stand for buttons and check boxes of the window: they press them, are checked with them,
// and read as they do.
#pragma once

#include <QKeySequence>
#include <QString>

class QAction;
class QMainWindow;

namespace quarlin {

struct MirrorRow {
  const char* menu;      // object names
  const char* widget;    // a button of any kind
  const char* text;      // empty: as the button reads at present
  const char* shortcut;  // empty: none
};

// Adds one entry; menu and widget are there. What the user clicks is what a click on the widget does.
QAction* AddMirror(QMainWindow& window, const MirrorRow& row);

// The entries of the menus Link, Send, Test and Script.
void AddMirrors(QMainWindow& window);

}  // namespace quarlin
