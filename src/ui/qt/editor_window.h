// SPDX-License-Identifier: GPL-3.0-or-later
// The script editor on the screen: menus and tools, the text, and room beside and below it for panels.
#pragma once

#include <QAction>
#include <QMenu>
#include <QSplitter>
#include <QString>
#include <QTabWidget>
#include <QToolBar>

#include "script/edit/frm_editor.h"
#include "ui/qt/form_window.h"
#include "ui/qt/frame_pacer.h"

class QLabel;
class QMenuBar;

namespace quarlin {

class Completion;
class DebugControls;
class FindBar;
class RunPane;
class ScriptView;

class EditorWindow : public FormWindow {
  Q_OBJECT

 public:
  explicit EditorWindow(FrmEditor& form);
  ~EditorWindow() override;

  ScriptView& View() { return *view_; }

  // Where further panels go: pages below the text, or at its right, where nothing is shown without one.
  enum class Side { Below, Right };
  void AddPanel(Side side, QWidget* panel, const QString& title);

  // A menu by its object name ("editorMenuRun"), and the row of tools, for what panels bring along.
  QMenu* Menu(const char* name) { return findChild<QMenu*>(name); }
  QToolBar* Tools() { return tools_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct ActionRow;
  static const ActionRow rows[];

  void PutTogether();
  void FillMenus(QMenuBar& bar);
  QAction* Add(const ActionRow& row);
  void WireText();
  void TextChanged();
  void WireForm();
  void ShowFile();
  void ShowFault();
  QString RunState() const;
  void ShowPlace();
  void FillRecent();
  void Save();
  void AskForFile(bool save);
  void GoToLine();
  void Find();
  void Replace();
  void FindNext();
  void FindPrevious();
  void NewVbscript() { form_.New("VBScript"); }
  void NewJscript() { form_.New("JScript"); }
  void OpenOther() { AskForFile(false); }
  void SaveAs() { AskForFile(true); }
  void Check();
  void WireRun();
  void Start() { form_.Start(); }
  void Restart() { form_.Restart(); }
  void Stop() { form_.Stop(); }
  void Complete();
  void WireDebugger();

  FrmEditor& form_;
  ScriptView* view_;
  FindBar* findBar_;
  Completion* completion_;
  RunPane* run_;
  DebugControls* debug_ = nullptr;
  QToolBar* tools_;
  QTabWidget* below_;
  QTabWidget* right_;
  QMenu* recent_;
  QLabel* place_;
  FramePacer standingCheck_;
};

}  // namespace quarlin
