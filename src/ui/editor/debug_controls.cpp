// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/debug_controls.h"

#include <QInputDialog>
#include <QMenu>
#include <QToolBar>
#include <QToolTip>
#include <algorithm>

#include "base/scope_flag.h"
#include "script/values/conversions.h"
#include "ui/editor/script_view.h"

namespace quarlin {
namespace {

constexpr int dwellMilliseconds = 400;

QString TextOf(const std::u16string& text) {
  return QString::fromStdU16String(text);
}

}  // namespace

// An entry of the menu, and of the row of tools where it has a short name.
struct DebugControls::ActionRow {
  const char* name;
  const char* text;
  const char* toolTip;
  const char* shortcut;
  void (DebugControls::*slot)();
  const char* tool;
  bool onlyStanding;
};

const DebugControls::ActionRow DebugControls::rows[] = {
    {"actionDebugGo", QT_TR_NOOP("&Go on"), QT_TR_NOOP("Lets the script go on"), "F5", &DebugControls::Go,
     QT_TR_NOOP("Go on"), true},
    {"actionDebugPause", QT_TR_NOOP("&Pause"),
     QT_TR_NOOP("The script stands at its next statement, or when the program calls it next; "
                "once more takes that back"),
     "Ctrl+Shift+F5", &DebugControls::Pause, QT_TR_NOOP("Pause"), false},
    {"actionDebugOver", QT_TR_NOOP("Step &over"), QT_TR_NOOP("Does this statement, with all that it calls"),
     "F10", &DebugControls::Over, QT_TR_NOOP("Over"), true},
    {"actionDebugInto", QT_TR_NOOP("Step &into"),
     QT_TR_NOOP("Does this statement, and stands in what it calls"), "F11", &DebugControls::Into,
     QT_TR_NOOP("Into"), true},
    {"actionDebugOut", QT_TR_NOOP("Step o&ut"), QT_TR_NOOP("Goes on until this procedure has returned"),
     "Shift+F11", &DebugControls::Out, QT_TR_NOOP("Out"), true},
    {"actionDebugCursor", QT_TR_NOOP("Run to the c&ursor"),
     QT_TR_NOOP("Goes on until the script comes to the line of the cursor"), "Ctrl+F10",
     &DebugControls::RunToCursor, nullptr, false},
    {"actionDebugBreakpoint", QT_TR_NOOP("&Breakpoint"),
     QT_TR_NOOP(
         "The script stands at this line, or does no longer; a click left of the line number does the same"),
     "F9", &DebugControls::ToggleHere, nullptr, false},
    {"actionDebugCondition", QT_TR_NOOP("Breakpoint with a con&dition\u2026"),
     QT_TR_NOOP("The script stands at this line when an expression is true"), "Ctrl+F9",
     &DebugControls::EditConditionHere, nullptr, false},
};

DebugControls::DebugControls(ScriptDebugger& debugger, ScriptView& view, QWidget& window, QMenu& menu,
                             QToolBar& tools)
    : QObject(&window), debugger_(debugger), view_(view), window_(window), panel_(new DebugPanel(debugger)) {
  menu.addSeparator();
  tools.addSeparator();
  for (const ActionRow& row : rows) {
    QAction* action = menu.addAction(tr(row.text));
    action->setObjectName(row.name);
    action->setShortcut(QKeySequence(row.shortcut));
    action->setToolTip(
        tr("%1 (%2)").arg(tr(row.toolTip), action->shortcut().toString(QKeySequence::NativeText)));
    window.addAction(action);
    action->setCheckable(row.slot == &DebugControls::Pause);
    connect(action, &QAction::triggered, this, row.slot);
    if (row.tool == nullptr) continue;
    action->setIconText(tr(row.tool));
    tools.addAction(action);
  }
  view.SendScintilla(QsciScintilla::SCI_SETMOUSEDWELLTIME, dwellMilliseconds);
  connect(&view, &ScriptView::breakpointWanted, this, &DebugControls::Toggle);
  connect(&view, &QsciScintilla::marginRightClicked, this,
          [this](int margin, int line, Qt::KeyboardModifiers) {
            if (margin == 0) EditCondition(line + 1);
          });
  connect(&view, &QsciScintilla::linesChanged, this, &DebugControls::LinesMoved);
  connect(&view, &QsciScintillaBase::SCN_DWELLSTART, this, &DebugControls::Hover);
  connect(panel_, &DebugPanel::lineWanted, this, [this](int line) {
    if (debugger_.Place().file != file_) emit fileWanted(debugger_.Place().file);
    if (debugger_.Place().file == file_) view_.GoTo(line, 0);
  });
  debugger_.OnChange = [this] { ScriptStandsOrGoes(); };
  ScriptStandsOrGoes();
}

DebugControls::~DebugControls() {
  debugger_.OnChange = nullptr;
}

void DebugControls::ScriptStandsOrGoes() {
  panel_->Refresh();
  EnableActions();
  ShowStand();
  emit standChanged();
  if (!debugger_.Stands()) return;
  // What it takes to show another file may ask the user, so it has to wait until the script stands.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (debugger_.Stands()) emit fileWanted(debugger_.Place().file);
      },
      Qt::QueuedConnection);
}

void DebugControls::ShowStand() {
  const bool here = debugger_.Stands() && debugger_.Place().file == file_;
  view_.SetRunningLine(here ? debugger_.Place().line : 0);
  if (here) view_.GoTo(debugger_.Place().line, 0);
}

// While it stands F5 means this; otherwise the window has its own entry for the key.
void DebugControls::EnableActions() {
  const bool stands = debugger_.Stands();
  for (const ActionRow& row : rows) {
    if (row.onlyStanding) window_.findChild<QAction*>(row.name)->setEnabled(stands);
  }
  auto* pause = window_.findChild<QAction*>("actionDebugPause");
  pause->setEnabled(runs_ && !stands);
  pause->setChecked(debugger_.Pausing());
  window_.findChild<QAction*>("actionDebugCursor")
      ->setEnabled(!file_.empty() && debugger_.Followed() == file_);
  if (auto* start = window_.findChild<QAction*>("actionEditorStart")) start->setEnabled(!stands);
}

void DebugControls::ScriptStartsOrEnds(bool runs) {
  runs_ = runs;
  panel_->ShowState();
  EnableActions();
}

void DebugControls::Opened(const std::filesystem::path& file, bool mayFollow) {
  file_ = file;
  SetMayFollow(mayFollow);
  if (file_.empty()) debugger_.SetBreakpoints(file_, {});  // those of another text without a name
  ShowBreakpoints(debugger_.BreakpointsOf(file_));
  ShowStand();
}

void DebugControls::Renamed(const std::filesystem::path& file, bool mayFollow) {
  const bool renamed = file != file_;
  file_ = file;
  SetMayFollow(mayFollow);
  if (renamed) debugger_.SetBreakpoints(file_, Breakpoints());
}

void DebugControls::SetMayFollow(bool mayFollow) {
  mayFollow_ = mayFollow;
  panel_->SetMayFollow(mayFollow);
  EnableActions();
}

void DebugControls::KeepBreakpoints(const std::function<void()>& change) {
  {
    const ScopeFlag moving(moving_);
    change();
  }
  ShowBreakpoints(debugger_.BreakpointsOf(file_));
  ShowStand();
}

void DebugControls::ShowBreakpoints(const std::vector<Breakpoint>& breakpoints) {
  const ScopeFlag moving(moving_);
  view_.RemoveBreakpoints();
  conditions_.clear();
  for (const Breakpoint& each : breakpoints) {
    const QString condition = TextOf(each.condition);
    conditions_.insert(view_.SetBreakpoint(each.line, true, !condition.isEmpty()), condition);
  }
}

// In ascending order of their lines; of two that an edit has brought together, one.
std::vector<Breakpoint> DebugControls::Breakpoints() const {
  std::vector<Breakpoint> breakpoints;
  for (auto each = conditions_.constBegin(); each != conditions_.constEnd(); ++each) {
    const int line = view_.markerLine(each.key()) + 1;
    if (line > 0) breakpoints.push_back({line, each.value().toStdU16String()});
  }
  const auto byLine = [](const Breakpoint& a, const Breakpoint& b) { return a.line < b.line; };
  std::sort(breakpoints.begin(), breakpoints.end(), byLine);
  const auto sameLine = [](const Breakpoint& a, const Breakpoint& b) { return a.line == b.line; };
  breakpoints.erase(std::unique(breakpoints.begin(), breakpoints.end(), sameLine), breakpoints.end());
  return breakpoints;
}

void DebugControls::LinesMoved() {
  if (!moving_) debugger_.MoveBreakpoints(file_, Breakpoints());
}

void DebugControls::SetBreakpoint(int line, const QString& condition) {
  RemoveBreakpoint(line);
  conditions_.insert(view_.SetBreakpoint(line, true, !condition.isEmpty()), condition);
  debugger_.SetBreakpoints(file_, Breakpoints());
}

void DebugControls::RemoveBreakpoint(int line) {
  for (const int handle : conditions_.keys()) {
    if (view_.markerLine(handle) + 1 == line) conditions_.remove(handle);
  }
  view_.SetBreakpoint(line, false);
  debugger_.SetBreakpoints(file_, Breakpoints());
}

std::optional<int> DebugControls::LineToStandAt(int line) const {
  return mayFollow_ ? ScriptDebugger::LineToStandAt(vbs::Utf16Of(view_.Text()), line) : std::nullopt;
}

void DebugControls::Toggle(int line) {
  const auto place = LineToStandAt(line);
  if (!place) return;
  const std::vector<Breakpoint> present = Breakpoints();
  const bool set = std::any_of(present.begin(), present.end(), [&](const Breakpoint& each) {
    return each.line == *place || each.line == line;
  });
  if (set) {
    RemoveBreakpoint(*place);
    RemoveBreakpoint(line);
  } else {
    SetBreakpoint(*place, {});
  }
}

void DebugControls::EditCondition(int line) {
  const auto place = LineToStandAt(line);
  if (!place) return;
  QString condition;
  for (const Breakpoint& each : Breakpoints()) {
    if (each.line == *place) condition = TextOf(each.condition);
  }
  auto* dialog = new QInputDialog(&window_);
  dialog->setObjectName("conditionDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Breakpoint with a condition"));
  dialog->setLabelText(
      tr("The script stands at line %1 when this expression is true.\nLeft empty: always.").arg(*place));
  dialog->setTextValue(condition);
  dialog->resize(420, 0);
  connect(dialog, &QInputDialog::textValueSelected, this,
          [this, at = *place](const QString& text) { SetBreakpoint(at, text.trimmed()); });
  dialog->open();
}

// Only of a variable: to read anything else could run the script.
void DebugControls::Hover(int position, int x, int y) {
  if (!debugger_.Stands() || position < 0) return;
  const QString name = view_.wordAtPoint(QPoint(x, y));
  const auto show = [&](const std::vector<ShownValue>& values) {
    for (const ShownValue& shown : values) {
      if (TextOf(shown.name).compare(name, Qt::CaseInsensitive) != 0) continue;
      QToolTip::showText(view_.mapToGlobal(QPoint(x, y)), TextOf(shown.name + u" = " + shown.text), &view_);
      return true;
    }
    return false;
  };
  if (!name.isEmpty() && !show(debugger_.Locals(0))) show(debugger_.Globals());
}

int DebugControls::CursorLine() const {
  int line = 0, column = 0;
  view_.getCursorPosition(&line, &column);
  return line + 1;
}

}  // namespace quarlin
