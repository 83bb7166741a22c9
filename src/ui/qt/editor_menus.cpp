// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of the script editor's window and its row of tools.
#include <QMenuBar>

#include "ui/editor/script_view.h"
#include "ui/qt/editor_window.h"

namespace quarlin {
namespace {

// A slot of the text itself, which has several of that name.
template <typename Object>
auto OfView(void (Object::*slot)()) {
  return slot;
}

}  // namespace

// An entry of a menu, and of the row of tools where it has a short name. Without a name it is a line.
struct EditorWindow::ActionRow {
  const char* menu;
  const char* name;
  const char* text;
  const char* toolTip;
  const char* shortcut;
  void (EditorWindow::*slot)();
  void (QsciScintilla::*viewSlot)();
  const char* tool;
};

const EditorWindow::ActionRow EditorWindow::rows[] = {
    {"editorMenuFile", "actionEditorNewVbscript", QT_TR_NOOP("&New VBScript"),
     QT_TR_NOOP("A new script with the procedures that the program calls"), "Ctrl+N",
     &EditorWindow::NewVbscript, nullptr, nullptr},
    {"editorMenuFile", "actionEditorNewJscript", QT_TR_NOOP("New &JScript"),
     QT_TR_NOOP("The same in JScript"), "", &EditorWindow::NewJscript, nullptr, nullptr},
    {"editorMenuFile", "actionEditorOpen", QT_TR_NOOP("&Open…"), QT_TR_NOOP("Opens another script"), "Ctrl+O",
     &EditorWindow::OpenOther, nullptr, nullptr},
    {"editorMenuFile", "actionEditorSave", QT_TR_NOOP("&Save"), QT_TR_NOOP("Saves the script"), "Ctrl+S",
     &EditorWindow::Save, nullptr, QT_TR_NOOP("Save")},
    {"editorMenuFile", "actionEditorSaveAs", QT_TR_NOOP("Save &as…"),
     QT_TR_NOOP("Saves the script under another name"), "Ctrl+Shift+S", &EditorWindow::SaveAs, nullptr,
     nullptr},
    {"editorMenuFile", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {"editorMenuFile", "actionEditorClose", QT_TR_NOOP("&Close"), QT_TR_NOOP("Closes the editor"), "Ctrl+W",
     nullptr, nullptr, nullptr},
    {"editorMenuEdit", "actionEditorUndo", QT_TR_NOOP("&Undo"), "", "Ctrl+Z", nullptr, &QsciScintilla::undo,
     nullptr},
    {"editorMenuEdit", "actionEditorRedo", QT_TR_NOOP("&Redo"), "", "Ctrl+Y", nullptr, &QsciScintilla::redo,
     nullptr},
    {"editorMenuEdit", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {"editorMenuEdit", "actionEditorFind", QT_TR_NOOP("&Find…"), QT_TR_NOOP("Finds a text in the script"),
     "Ctrl+F", &EditorWindow::Find, nullptr, QT_TR_NOOP("Find")},
    {"editorMenuEdit", "actionEditorFindNext", QT_TR_NOOP("Find &next"), "", "F3", &EditorWindow::FindNext,
     nullptr, nullptr},
    {"editorMenuEdit", "actionEditorFindPrevious", QT_TR_NOOP("Find &previous"), "", "Shift+F3",
     &EditorWindow::FindPrevious, nullptr, nullptr},
    {"editorMenuEdit", "actionEditorReplace", QT_TR_NOOP("R&eplace…"),
     QT_TR_NOOP("Finds a text and puts another in its place"), "Ctrl+H", &EditorWindow::Replace, nullptr,
     nullptr},
    {"editorMenuEdit", "actionEditorGoToLine", QT_TR_NOOP("&Go to line…"), "", "Ctrl+G",
     &EditorWindow::GoToLine, nullptr, nullptr},
    {"editorMenuEdit", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr},
    {"editorMenuEdit", "actionEditorComment", QT_TR_NOOP("&Comment out, or back in"),
     QT_TR_NOOP("Puts the comment sign before the selected lines, or takes it away"), "Ctrl+/", nullptr,
     nullptr, nullptr},
    {"editorMenuEdit", "actionEditorComplete", QT_TR_NOOP("Co&mplete"),
     QT_TR_NOOP("Offers what may stand here"), "Ctrl+Space", &EditorWindow::Complete, nullptr, nullptr},
    {"editorMenuView", "actionEditorLarger", QT_TR_NOOP("La&rger text"), "", "Ctrl++", nullptr,
     OfView<QsciScintilla>(&QsciScintilla::zoomIn), nullptr},
    {"editorMenuView", "actionEditorSmaller", QT_TR_NOOP("S&maller text"), "", "Ctrl+-", nullptr,
     OfView<QsciScintilla>(&QsciScintilla::zoomOut), nullptr},
    {"editorMenuView", "actionEditorOrdinary", QT_TR_NOOP("&Ordinary text size"), "", "Ctrl+0", nullptr,
     nullptr, nullptr},
    {"editorMenuRun", "actionEditorCheck", QT_TR_NOOP("&Check"),
     QT_TR_NOOP("Looks for what the language does not allow, and goes to the first place"), "F7",
     &EditorWindow::Check, nullptr, QT_TR_NOOP("Check")},
    {"editorMenuRun", "actionEditorStart", QT_TR_NOOP("&Start"),
     QT_TR_NOOP("Saves the script and runs it as the script of the program"), "F5", &EditorWindow::Start,
     nullptr, QT_TR_NOOP("Start")},
    {"editorMenuRun", "actionEditorRestart", QT_TR_NOOP("&Restart"),
     QT_TR_NOOP("Begins anew with the script as it stands here"), "Ctrl+F5", &EditorWindow::Restart, nullptr,
     QT_TR_NOOP("Restart")},
    {"editorMenuRun", "actionEditorStop", QT_TR_NOOP("S&top"), QT_TR_NOOP("Switches scripting off"),
     "Shift+F5", &EditorWindow::Stop, nullptr, QT_TR_NOOP("Stop")},
};

void EditorWindow::FillMenus(QMenuBar& bar) {
  tools_->setObjectName("editorTools");
  tools_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  const std::pair<const char*, QString> menus[] = {{"editorMenuFile", tr("&File")},
                                                   {"editorMenuEdit", tr("&Edit")},
                                                   {"editorMenuView", tr("&View")},
                                                   {"editorMenuRun", tr("&Run")}};
  for (const auto& [name, title] : menus) {
    QMenu* menu = bar.addMenu(title);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
  }
  for (const ActionRow& row : rows) Add(row);
  Menu("editorMenuFile")->insertMenu(findChild<QAction*>("actionEditorSave"), recent_);
  connect(findChild<QAction*>("actionEditorClose"), &QAction::triggered, this, &QWidget::close);
  connect(findChild<QAction*>("actionEditorComment"), &QAction::triggered, view_, &ScriptView::ToggleComment);
  connect(findChild<QAction*>("actionEditorOrdinary"), &QAction::triggered, this,
          [this] { view_->zoomTo(0); });
}

QAction* EditorWindow::Add(const ActionRow& row) {
  QMenu* menu = Menu(row.menu);
  if (row.name == nullptr) return menu->addSeparator();
  QAction* action = menu->addAction(tr(row.text));
  action->setObjectName(row.name);
  action->setShortcut(QKeySequence(row.shortcut));
  addAction(action);  // its key works while the menu is closed
  if (row.slot != nullptr) connect(action, &QAction::triggered, this, row.slot);
  if (row.viewSlot != nullptr) connect(action, &QAction::triggered, view_, row.viewSlot);
  const QString key = action->shortcut().toString(QKeySequence::NativeText);
  if (row.toolTip != nullptr && *row.toolTip != '\0') {
    action->setToolTip(key.isEmpty() ? tr(row.toolTip) : tr("%1 (%2)").arg(tr(row.toolTip), key));
  }
  if (row.tool != nullptr) {
    action->setIconText(tr(row.tool));
    tools_->addAction(action);
  }
  return action;
}

}  // namespace quarlin
