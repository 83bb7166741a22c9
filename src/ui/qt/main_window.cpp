#include "ui/qt/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QShortcut>
#include <QToolTip>

#include "script/script_host.h"
#include "ui/qt/script_list_dialog.h"
#include "ui/qt/widget_text.h"
#include "ui_main_window.h"

namespace quarlin {

MainWindow::MainWindow(FrmMain& frm) : frm_(frm), ui_(std::make_unique<Ui::MainWindow>()) {
  QApplication::setCursorFlashTime(0);  // a blinking cursor would wake an idle program twice a second
  ui_->setupUi(this);
  ui_->splitter->setStretchFactor(0, 1);
  ui_->splitter->setStretchFactor(1, 0);
  setWindowTitle(ShownText(frm.Caption()));
  binder_ = std::make_unique<Binder>(frm.Collection(), *this);
  WireMenus();
  WireDisplay();
  WireFind();
  WireTabs();
  WireScript();
  ui_->cmdOpen->setFocus();
}

MainWindow::~MainWindow() {
  frm_.OnFocusDisplay = nullptr;
  frm_.OnCaptionChanged = nullptr;
  frm_.Script().ShowList = nullptr;
  frm_.Script().Panel().OnWindowChanged = nullptr;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  binder_->CommitEdits();
  frm_.Unload();
}

void MainWindow::WireMenus() {
  const std::pair<QAction*, QPushButton*> buttons[] = {
      {ui_->actionSave, ui_->cmdSave_0},   {ui_->actionLoad, ui_->cmdSave_1},
      {ui_->actionReport, ui_->cmdReport}, {ui_->actionErrorList, ui_->cmdErr},
      {ui_->actionStart, ui_->Command1},
  };
  for (const auto& [action, button] : buttons) {
    connect(action, &QAction::triggered, button, &QPushButton::click);
  }
  connect(ui_->actionQuit, &QAction::triggered, this, &MainWindow::close);
  connect(ui_->actionAbout, &QAction::triggered, this, &MainWindow::ShowAbout);
  connect(ui_->actionCommand, &QAction::triggered, this, [this] {
    ui_->CBOSEND->setFocus(Qt::ShortcutFocusReason);
    ui_->CBOSEND->lineEdit()->selectAll();
  });
  connect(ui_->CBOSEND->lineEdit(), &QLineEdit::returnPressed, ui_->cmdSend, &QPushButton::click);
}

void MainWindow::WireDisplay() {
  const std::pair<QToolButton*, QAction*> buttons[] = {
      {ui_->findPreviousButton, ui_->actionFindPrevious},
      {ui_->findNextButton, ui_->actionFindNext},
      {ui_->findCaseButton, ui_->actionFindCase},
      {ui_->pauseButton, ui_->actionPause},
      {ui_->timesButton, ui_->actionTimes},
      {ui_->hexButton, ui_->actionHex},
      {ui_->lineEndsButton, ui_->actionLineEnds},
      {ui_->clearButton, ui_->actionClear},
  };
  for (const auto& [button, action] : buttons) button->setDefaultAction(action);

  ReceivedTextView* view = ui_->txtric;
  connect(ui_->actionPause, &QAction::toggled, view, &ReceivedTextView::SetPaused);
  connect(ui_->actionTimes, &QAction::toggled, view, &ReceivedTextView::SetShowsTimes);
  connect(ui_->actionHex, &QAction::toggled, view, &ReceivedTextView::SetHexView);
  connect(ui_->actionLineEnds, &QAction::toggled, view, &ReceivedTextView::SetShowsLineEnds);
  connect(view, &ReceivedTextView::pausedChanged, ui_->actionPause, &QAction::setChecked);
  connect(view, &ReceivedTextView::showsTimesChanged, ui_->actionTimes, &QAction::setChecked);
  connect(view, &ReceivedTextView::hexViewChanged, ui_->actionHex, &QAction::setChecked);

  const auto clear = [this] { frm_.controls.display.txtric.Clear(); };
  connect(ui_->actionClear, &QAction::triggered, this, clear);
  connect(view, &ReceivedTextView::clearRequested, this, clear);
  frm_.OnFocusDisplay = [view] { view->setFocus(); };
}

void MainWindow::WireFind() {
  connect(ui_->actionFind, &QAction::triggered, this, [this] {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
    ui_->findText->selectAll();
  });
  connect(ui_->actionFindNext, &QAction::triggered, this, [this] { Find(false); });
  connect(ui_->actionFindPrevious, &QAction::triggered, this, [this] { Find(true); });
  connect(ui_->findText, &QLineEdit::returnPressed, this, [this] { Find(false); });
}

void MainWindow::Find(bool backward) {
  const QString text = ui_->findText->text();
  if (text.isEmpty()) {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
  } else if (!ui_->txtric->Find(text, backward, ui_->actionFindCase->isChecked())) {
    const QPoint below(0, ui_->findText->height() / 2);
    QToolTip::showText(ui_->findText->mapToGlobal(below), tr("Not found"), ui_->findText);
  }
}

// Alt+1 to Alt+5: their names would use up the letters that the settings on them need.
void MainWindow::WireTabs() {
  for (int i = 0; i < ui_->tabs->count(); ++i) {
    auto* shortcut = new QShortcut(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + i)), this);
    connect(shortcut, &QShortcut::activated, this, [this, i] {
      ui_->tabs->setCurrentIndex(i);
      ui_->tabs->setFocus(Qt::ShortcutFocusReason);
    });
  }
}

void MainWindow::WireScript() {
  frm_.OnCaptionChanged = [this] { setWindowTitle(ShownText(frm_.Caption())); };
  frm_.Script().ShowList = [this](FrmScript& list) { ScriptListDialog(list, this).exec(); };
  frm_.Script().Panel().OnWindowChanged = [this] { ShowCommandPanel(); };
}

void MainWindow::ShowCommandPanel() {
  FrmCommand& panel = frm_.Script().Panel();
  if (!commandWindow_ && panel.Visible()) commandWindow_ = std::make_unique<CommandWindow>(panel);
  if (commandWindow_) commandWindow_->ShowState();
}

void MainWindow::ShowAbout() {
  auto* box = new QMessageBox(QMessageBox::Information, tr("About Quarlin"), ShownText(frm_.Caption()),
                              QMessageBox::Ok, this);
  box->setInformativeText(
      tr("Sends commands to instruments with a line-oriented ASCII protocol, shows and checks their "
         "answers, and counts what goes wrong."));
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();  // traffic goes on behind it
}

}  // namespace quarlin
