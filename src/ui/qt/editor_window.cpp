// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/editor_window.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/editor/completion.h"
#include "ui/editor/debug_controls.h"
#include "ui/editor/find_bar.h"
#include "ui/editor/run_pane.h"
#include "ui/editor/script_view.h"
#include "ui/qt/elided_label.h"
#include "ui/qt/trouble_labels.h"
#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

QString PathText(const std::filesystem::path& path) {
  return QFile::decodeName(path.c_str());
}

std::filesystem::path PathOf(const QString& text) {
  return QFile::encodeName(text).toStdString();
}

QTabWidget* MakeTabs(const char* name) {
  auto* tabs = new QTabWidget;
  tabs->setObjectName(name);
  tabs->setDocumentMode(true);
  tabs->hide();
  return tabs;
}

QSplitter* MakeSplitter(Qt::Orientation orientation, const char* name, QWidget* first, QWidget* second) {
  auto* splitter = new QSplitter(orientation);
  splitter->setObjectName(name);
  splitter->setChildrenCollapsible(false);
  splitter->addWidget(first);
  splitter->addWidget(second);
  splitter->setStretchFactor(0, 1);
  splitter->setStretchFactor(1, 0);
  return splitter;
}

}  // namespace

EditorWindow::EditorWindow(FrmEditor& form)
    : FormWindow(form),
      form_(form),
      view_(new ScriptView),
      findBar_(new FindBar(*view_)),
      completion_(new Completion(*view_, form.Words)),
      run_(new RunPane),
      tools_(new QToolBar),
      below_(MakeTabs("editorBelow")),
      right_(MakeTabs("editorRight")),
      recent_(new QMenu(tr("&Recent scripts"), this)),
      place_(new QLabel),
      standingCheck_([&form] { form.CheckText(); },
                     std::chrono::duration_cast<std::chrono::milliseconds>(FrmEditor::checkPause)) {
  view_->setObjectName("scriptText");
  view_->setAccessibleName(tr("Text of the script"));
  PutTogether();
  WireText();
  WireRun();
  WireDebugger();
  WireForm();
  Bind();
  view_->setFocus();
}

EditorWindow::~EditorWindow() {
  EditorHooks& hooks = form_.Hooks;
  hooks.text = nullptr;
  hooks.opened = nullptr;
  hooks.readAgain = nullptr;
  hooks.fileChanged = nullptr;
  hooks.faultChanged = nullptr;
  hooks.placeWanted = nullptr;
  hooks.runChanged = nullptr;
  form_.Output().OnNew = nullptr;
}

void EditorWindow::PutTogether() {
  auto* textAndFind = new QWidget;
  auto* textColumn = new QVBoxLayout(textAndFind);
  textColumn->setContentsMargins(0, 0, 0, 0);
  textColumn->setSpacing(4);
  textColumn->addWidget(findBar_);
  textColumn->addWidget(view_, 1);

  auto* fault = new ElidedLabel;
  fault->setObjectName("lblEditorFault");
  fault->setToolTip(tr("The first thing in the text that the language does not allow"));
  auto* told = new ElidedLabel;
  told->setObjectName("lblEditorTold");
  told->setToolTip(tr("What the editor has done last"));
  place_->setObjectName("editorPlace");
  place_->setToolTip(tr("Where the cursor is, and how the file is written"));
  auto* status = new QHBoxLayout;
  status->setSpacing(16);
  status->addWidget(fault, 2);
  status->addWidget(told, 2);
  status->addWidget(place_);

  auto* bar = new QMenuBar;
  auto* column = new QVBoxLayout(this);
  column->setMenuBar(bar);
  column->setContentsMargins(8, 4, 8, 4);
  column->setSpacing(6);
  column->addWidget(tools_);
  auto* sides = MakeSplitter(Qt::Horizontal, "editorTextAndRight", textAndFind, right_);
  auto* split = MakeSplitter(Qt::Vertical, "editorTextAndBelow", sides, below_);
  split->setSizes({3, 1});
  column->addWidget(split, 1);
  column->addLayout(status);
  FillMenus(*bar);
  ShowAsTrouble(*this, {fault});
  resize(900, 620);
}

void EditorWindow::WireText() {
  connect(view_, &QsciScintilla::textChanged, this, &EditorWindow::TextChanged);
  connect(view_, &QsciScintilla::modificationChanged, this,
          [this](bool modified) { form_.SetModified(modified); });
  connect(view_, &QsciScintilla::cursorPositionChanged, this, &EditorWindow::ShowPlace);
  connect(recent_, &QMenu::aboutToShow, this, &EditorWindow::FillRecent);
}

// While a script stands none of the program's alarms goes off, and so not the one that looks at the text.
void EditorWindow::TextChanged() {
  form_.TextChanged();
  if (form_.Debugger().Stands()) standingCheck_.Request();
}

void EditorWindow::WireRun() {
  AddPanel(Side::Below, run_, tr("&Output"));
  form_.Output().OnNew = [this] { run_->Add(form_.Output().Take()); };
  form_.Hooks.runChanged = [this] {
    ShowPlace();
    findChild<QAction*>("actionEditorStop")->setEnabled(form_.ScriptingIsOn());
    debug_->ScriptStartsOrEnds(form_.ScriptingIsOn());
  };
  connect(run_, &RunPane::placeWanted, this, [this](int line, int column) {
    view_->GoTo(line, column);
    view_->setFocus();
  });
  connect(run_, &RunPane::tryWanted, this,
          [this](ScriptHook hook, const QString& text) { form_.Try(hook, BytesOf(text)); });
  connect(completion_, &Completion::helpChanged, this,
          [this](const QString& help) { form_.Tell(BytesOf(help)); });
  view_->SetObjectNames(form_.Words.QualifiedNames());
}

void EditorWindow::Complete() {
  completion_->Offer();
}

void EditorWindow::WireDebugger() {
  debug_ = new DebugControls(form_.Debugger(), *view_, *this, *Menu("editorMenuRun"), *tools_);
  AddPanel(Side::Right, debug_->Panel(), tr("&Debugger"));
  connect(debug_, &DebugControls::fileWanted, this, [this](const std::filesystem::path& file) {
    form_.SetVisible(true);
    if (form_.File() != file && !form_.OpenFile(file)) return;
    raise();
    activateWindow();
  });
  connect(debug_, &DebugControls::standChanged, this, [this] { form_.StandChanged(); });
}

void EditorWindow::WireForm() {
  EditorHooks& hooks = form_.Hooks;
  hooks.text = [this] { return view_->Text(); };
  hooks.opened = [this] {
    view_->SetLanguage(form_.Language());
    view_->ShowText(form_.Text().utf8, form_.Text().lineEnd);
    debug_->Opened(form_.File(), form_.Language() == "VBScript");
    view_->setFocus();
  };
  hooks.readAgain = [this] {
    debug_->KeepBreakpoints([this] { view_->ReplaceText(form_.Text().utf8); });
    view_->setModified(false);
  };
  hooks.fileChanged = [this] { ShowFile(); };
  hooks.faultChanged = [this] { ShowFault(); };
  hooks.placeWanted = [this](vbs::Position place) {
    view_->GoTo(place.line, place.column);
    view_->setFocus();
  };
  hooks.opened();
  hooks.runChanged();
  ShowFile();
  ShowFault();
}

void EditorWindow::ShowFile() {
  if (!form_.Modified() && view_->isModified()) view_->setModified(false);
  view_->SetLanguage(form_.Language());
  completion_->SetLanguage(form_.Language());
  debug_->Renamed(form_.File(), form_.Language() == "VBScript");
  ShowPlace();
}

void EditorWindow::ShowFault() {
  const auto& fault = form_.Fault();
  view_->MarkError(fault ? fault->place.line : 0, fault ? fault->place.column : 0);
  findBar_->TextChanged();
}

QString EditorWindow::RunState() const {
  if (!form_.Runs()) return {};
  const bool stands = form_.Debugger().Stands();
  if (form_.RunsOlder()) return stands ? tr("an older text stands   ") : tr("an older text runs   ");
  return stands ? tr("stands   ") : tr("runs   ");
}

void EditorWindow::ShowPlace() {
  int line = 0, column = 0;
  view_->getCursorPosition(&line, &column);
  const std::string_view encoding = EncodingName(form_.Text().encoding);
  place_->setText(RunState() +
                  tr("Line %1, column %2   %3   %4")
                      .arg(line + 1)
                      .arg(column)
                      .arg(QLatin1String(encoding.data(), static_cast<qsizetype>(encoding.size())),
                           QString::fromStdString(std::string(form_.Language()))));
}

void EditorWindow::FillRecent() {
  recent_->clear();
  for (const std::filesystem::path& file : form_.Recent.Files()) {
    const QString number = QString::number(recent_->actions().size() + 1);
    QAction* entry = recent_->addAction('&' + number + "  " + PathText(file).replace('&', "&&"));
    connect(
        entry, &QAction::triggered, this, [this, file] { form_.OpenFile(file); }, Qt::QueuedConnection);
  }
}

void EditorWindow::Save() {
  form_.File().empty() ? AskForFile(true) : static_cast<void>(form_.Save());
}

// The dialog stands open beside the traffic. What the user chose is done when it has gone, for there may be
// another question.
void EditorWindow::AskForFile(bool save) {
  auto* dialog =
      new QFileDialog(this, save ? tr("Save script as") : tr("Open script"), PathText(form_.Folder()));
  dialog->setObjectName("scriptDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setNameFilters({tr("Scripts (*.vbs *.js)"), tr("All files (*)")});
  dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  if (save) {
    dialog->setDefaultSuffix(form_.Language() == "VBScript" ? "vbs" : "js");
    dialog->selectFile(QString::fromStdString(form_.FileName()));
  }
  connect(
      dialog, &QFileDialog::fileSelected, this,
      [this, save](const QString& file) { save ? form_.SaveAs(PathOf(file)) : form_.OpenFile(PathOf(file)); },
      Qt::QueuedConnection);
  dialog->open();
}

void EditorWindow::GoToLine() {
  int line = 0, column = 0;
  view_->getCursorPosition(&line, &column);
  auto* dialog = new QInputDialog(this);
  dialog->setObjectName("goToLineDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Go to line"));
  dialog->setLabelText(tr("Line, from 1 to %1").arg(view_->lines()));
  dialog->setInputMode(QInputDialog::IntInput);
  dialog->setIntRange(1, view_->lines());
  dialog->setIntValue(line + 1);
  connect(dialog, &QInputDialog::intValueSelected, this, [this](int wanted) {
    view_->GoTo(wanted, 0);
    view_->setFocus();
  });
  dialog->open();
}

void EditorWindow::Find() {
  findBar_->Open(false);
}

void EditorWindow::Replace() {
  findBar_->Open(true);
}

void EditorWindow::FindNext() {
  findBar_->FindNext();
}

void EditorWindow::FindPrevious() {
  findBar_->FindPrevious();
}

void EditorWindow::Check() {
  if (form_.CheckText()) {
    form_.Tell("no errors found");
  } else {
    view_->GoTo(form_.Fault()->place.line, form_.Fault()->place.column);
    view_->setFocus();
  }
}

void EditorWindow::AddPanel(Side side, QWidget* panel, const QString& title) {
  QTabWidget* tabs = side == Side::Below ? below_ : right_;
  tabs->addTab(panel, title);
  tabs->show();
}

// A dialog would close on Escape, and press a button on Enter.
void EditorWindow::keyPressEvent(QKeyEvent* event) {
  event->ignore();
}

}  // namespace quarlin
