// SPDX-License-Identifier: GPL-3.0-or-later
// The debugger in the editor's window: its keys and menu entries, the marks beside the text, the line where
// the script stands, and a value under the mouse.
#pragma once

#include <QAction>
#include <QHash>
#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "ui/editor/debug_panel.h"

class QMenu;
class QToolBar;

namespace quarlin {

class ScriptView;

class DebugControls : public QObject {
  Q_OBJECT

 public:
  // Adds its entries to the menu and the tools. All outlive it; the keys work in `window`.
  DebugControls(ScriptDebugger& debugger, ScriptView& view, QWidget& window, QMenu& menu, QToolBar& tools);
  ~DebugControls() override;

  DebugPanel* Panel() { return panel_; }

  // Another text is in the view: the breakpoints of its file are put there.
  void Opened(const std::filesystem::path& file, bool mayFollow);

  // The same text has another name.
  void Renamed(const std::filesystem::path& file, bool mayFollow);

  // Another script runs, or none does.
  void ScriptStartsOrEnds(bool runs);

  // Around a change of the whole text, which would take the marks along.
  void KeepBreakpoints(const std::function<void()>& change);

 signals:
  void fileWanted(const std::filesystem::path& file);  // the script stands in it
  void standChanged();

 private:
  struct ActionRow;
  static const ActionRow rows[];

  void ScriptStandsOrGoes();
  void ShowStand();
  void EnableActions();
  void SetMayFollow(bool mayFollow);
  std::optional<int> LineToStandAt(int line) const;
  void Toggle(int line);
  void EditCondition(int line);
  void SetBreakpoint(int line, const QString& condition);
  void RemoveBreakpoint(int line);
  void ShowBreakpoints(const std::vector<Breakpoint>& breakpoints);
  std::vector<Breakpoint> Breakpoints() const;
  void LinesMoved();
  void Hover(int position, int x, int y);
  int CursorLine() const;

  void Go() { debugger_.Go(); }
  void Over() { debugger_.StepOver(); }
  void Into() { debugger_.StepInto(); }
  void Out() { debugger_.StepOut(); }
  void Pause() { debugger_.Pausing() ? debugger_.Go() : debugger_.Pause(); }
  void RunToCursor() { debugger_.RunTo(CursorLine()); }
  void ToggleHere() { Toggle(CursorLine()); }
  void EditConditionHere() { EditCondition(CursorLine()); }

  ScriptDebugger& debugger_;
  ScriptView& view_;
  QWidget& window_;
  DebugPanel* panel_;
  std::filesystem::path file_;
  bool runs_ = false;
  bool mayFollow_ = true;
  bool moving_ = false;             // marks are being put: the text has not moved them
  QHash<int, QString> conditions_;  // by the handle of the mark
};

}  // namespace quarlin
