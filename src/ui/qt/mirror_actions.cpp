// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/mirror_actions.h"

#include <QAbstractButton>
#include <QAction>
#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>

#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

// No shortcut is one that a text box takes for itself.
constexpr MirrorRow mirrorRows[] = {
    {"menuLink", "cmdOpen", "", "F4"},
    {"menuLink", "cmdsearchcom", "", ""},
    {"menuLink", "chkReconnect", QT_TRANSLATE_NOOP("MirrorRow", "Reconnect by &itself"), ""},
    {"menuLink", "", "", ""},
    {"menuLink", "chkUDP", QT_TRANSLATE_NOOP("MirrorRow", "&UDP instead of TCP"), ""},
    {"menuLink", "chkListen", QT_TRANSLATE_NOOP("MirrorRow", "&Listen for the peer"), ""},
    {"menuLink", "", "", ""},
    {"menuLink", "chkLine_0", QT_TRANSLATE_NOOP("MirrorRow", "&Break"), ""},
    {"menuLink", "chkLine_1", QT_TRANSLATE_NOOP("MirrorRow", "&DTR"), ""},
    {"menuLink", "chkLine_2", QT_TRANSLATE_NOOP("MirrorRow", "R&TS"), ""},
    {"menuSend", "cmdSend", QT_TRANSLATE_NOOP("MirrorRow", "&Send the command"), "Ctrl+Return"},
    {"menuSend", "chkTerminal", QT_TRANSLATE_NOOP("MirrorRow", "&Keyboard on the line"), "Ctrl+Shift+T"},
    {"menuSend", "chkSequence", QT_TRANSLATE_NOOP("MirrorRow", "Cycle through se&quence.txt"), ""},
    {"menuTest", "Command1", "", "F5"},
    {"menuTest", "Check1", QT_TRANSLATE_NOOP("MirrorRow", "&Wait for each answer"), ""},
    {"menuTest", "chkSame", QT_TRANSLATE_NOOP("MirrorRow", "&Compare with the expected answer"), ""},
    {"menuTest", "chkStop", QT_TRANSLATE_NOOP("MirrorRow", "Stop on &error"), ""},
    {"menuTest", "", "", ""},
    {"menuTest", "chkDialog", QT_TRANSLATE_NOOP("MirrorRow", "Play the &instrument"), ""},
    {"menuTest", "cmdEditDialog", QT_TRANSLATE_NOOP("MirrorRow", "Edit &Dialog.txt"), ""},
    {"menuScript", "chkEnableScript", QT_TRANSLATE_NOOP("MirrorRow", "&Run a script"), "Ctrl+Shift+R"},
    {"menuScript", "cmdEditScript", QT_TRANSLATE_NOOP("MirrorRow", "&Edit the script"), ""},
};

// Brings the entry up to date with its button, which the user is about to compare it with.
void Update(QAction& action, const QAbstractButton& button, bool ownText) {
  action.setEnabled(button.isEnabled());
  action.setChecked(button.isChecked());
  if (!ownText) action.setText(button.text());
}

}  // namespace

QAction* AddMirror(QMainWindow& window, const MirrorRow& row) {
  auto* menu = window.findChild<QMenu*>(row.menu);
  auto* button = window.findChild<QAbstractButton*>(row.widget);
  Q_ASSERT(menu != nullptr && button != nullptr);
  const bool ownText = *row.text != '\0';
  QAction* action =
      menu->addAction(ownText ? QCoreApplication::translate("MirrorRow", row.text) : button->text());
  action->setShortcut(QKeySequence(row.shortcut));
  action->setCheckable(button->isCheckable());
  QObject::connect(action, &QAction::triggered, button, [action, button, ownText] {
    button->click();
    Update(*action, *button, ownText);
  });
  // A shortcut of a disabled entry would do nothing, without a word; so only an open menu shows it.
  QObject::connect(menu, &QMenu::aboutToShow, action,
                   [action, button, ownText] { Update(*action, *button, ownText); });
  QObject::connect(menu, &QMenu::aboutToHide, action, [action] { action->setEnabled(true); });
  return action;
}

void AddMirrors(QMainWindow& window) {
  for (const MirrorRow& row : mirrorRows) {
    if (*row.widget == '\0') {
      window.findChild<QMenu*>(row.menu)->addSeparator();
    } else {
      AddMirror(window, row);
    }
  }
}

}  // namespace quarlin
