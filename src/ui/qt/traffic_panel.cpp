// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/traffic_panel.h"

#include <QActionGroup>
#include <QFileDialog>
#include <QMenu>
#include <QShortcut>
#include <QToolButton>
#include <cstdint>
#include <filesystem>

#include "display/line_times.h"
#include "ui/qt/time_prompt.h"
#include "ui_traffic_panel.h"

namespace quarlin {

TrafficPanel::TrafficPanel(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::TrafficPanel>()) {
  ui_->setupUi(this);
  times_ = {ui_->actionTimesOff, ui_->actionTimesClock, ui_->actionTimesRow, ui_->actionTimesRequest};
  WireDisplay();
  WireTimes();
  WireFind();
  WireCopy();
}

TrafficPanel::~TrafficPanel() = default;

ReceivedTextView& TrafficPanel::View() {
  return *ui_->txtric;
}

QList<QAction*> TrafficPanel::FindActions() {
  return {ui_->actionFind,     ui_->actionFindNext,       ui_->actionFindPrevious,
          ui_->actionFindCase, ui_->actionFindExpression, ui_->actionGoToTime};
}

QList<QAction*> TrafficPanel::CopyActions() {
  return {ui_->actionCopyAsShown, ui_->actionCopyBytes};
}

QList<QAction*> TrafficPanel::ViewActions() {
  return {ui_->actionPause, ui_->actionTimes,      ui_->actionHex, ui_->actionCodes,
          ui_->actionWrap,  ui_->actionErrorsOnly, Separator(),    ui_->actionClear};
}

QAction* TrafficPanel::SaveAction() {
  return ui_->actionSaveDisplay;
}

QAction* TrafficPanel::Separator() {
  auto* separator = new QAction(this);
  separator->setSeparator(true);
  return separator;
}

void TrafficPanel::WireDisplay() {
  // What finds no room goes into the tool bar's own menu.
  ui_->tools->addActions(
      {ui_->actionFindPrevious, ui_->actionFindNext, ui_->actionFindCase, ui_->actionFindExpression});
  ui_->tools->addSeparator();
  ui_->tools->addActions(ViewActions());
  // The style draws its arrow black on a dark desktop, too.
  if (auto* more = ui_->tools->findChild<QToolButton*>("qt_toolbar_ext_button")) {
    more->setToolButtonStyle(Qt::ToolButtonTextOnly);
    more->setText(QStringLiteral("»"));
  }

  ReceivedTextView* view = ui_->txtric;
  connect(ui_->actionPause, &QAction::toggled, view, &ReceivedTextView::SetPaused);
  connect(ui_->actionHex, &QAction::toggled, view, &ReceivedTextView::SetHexView);
  connect(ui_->actionCodes, &QAction::toggled, view, &ReceivedTextView::SetShowsCodes);
  connect(ui_->actionWrap, &QAction::toggled, view, &ReceivedTextView::SetWraps);
  connect(ui_->actionErrorsOnly, &QAction::toggled, view, &ReceivedTextView::SetErrorsOnly);
  connect(view, &ReceivedTextView::pausedChanged, ui_->actionPause, &QAction::setChecked);
  connect(view, &ReceivedTextView::hexViewChanged, ui_->actionHex, &QAction::setChecked);
  connect(view, &ReceivedTextView::errorsOnlyChanged, ui_->actionErrorsOnly, &QAction::setChecked);
  connect(ui_->actionClear, &QAction::triggered, this, &TrafficPanel::clearRequested);
  view->addActions(ViewActions());  // for its menu
}

// The button switches the column that was chosen last; its arrow chooses.
void TrafficPanel::WireTimes() {
  auto* group = new QActionGroup(this);
  auto* menu = new QMenu(this);
  for (QAction* choice : times_) group->addAction(choice);
  menu->addActions(times_);
  ui_->actionTimes->setMenu(menu);
  if (auto* button = qobject_cast<QToolButton*>(ui_->tools->widgetForAction(ui_->actionTimes))) {
    button->setPopupMode(QToolButton::MenuButtonPopup);
  }
  ReceivedTextView* view = ui_->txtric;
  for (int i = 0; i < times_.size(); ++i) {
    connect(times_[i], &QAction::toggled, view, [view, i](bool on) {
      if (on) view->SetTimes(static_cast<TimeColumn>(i));
    });
  }
  connect(ui_->actionTimes, &QAction::triggered, this,
          [this, view](bool on) { view->SetTimes(on ? lastTimes_ : TimeColumn::Off); });
  connect(view, &ReceivedTextView::timesChanged, this, [this](TimeColumn times) {
    if (times != TimeColumn::Off) lastTimes_ = times;
    times_[static_cast<int>(times)]->setChecked(true);
    ui_->actionTimes->setChecked(times != TimeColumn::Off);
  });
  ui_->actionTimesOff->setChecked(true);
}

void TrafficPanel::WireFind() {
  connect(ui_->actionFind, &QAction::triggered, this, [this] {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
    ui_->findText->selectAll();
  });
  connect(ui_->actionFindNext, &QAction::triggered, this, [this] { Find(SearchDirection::Forward); });
  connect(ui_->actionFindPrevious, &QAction::triggered, this, [this] { Find(SearchDirection::Backward); });
  connect(ui_->findText, &QLineEdit::returnPressed, this, [this] { Find(SearchDirection::Forward); });
  connect(ui_->findText, &QLineEdit::textChanged, this, &TrafficPanel::SetSearch);
  for (const QAction* option :
       {ui_->actionFindCase, ui_->actionFindExpression, ui_->actionHex, ui_->actionCodes}) {
    connect(option, &QAction::toggled, this, &TrafficPanel::SetSearch);
  }
  connect(ui_->txtric, &ReceivedTextView::searchChanged, this, &TrafficPanel::ShowSearch);
  connect(ui_->actionGoToTime, &QAction::triggered, this, &TrafficPanel::AskForTime);
  auto* leave = new QShortcut(Qt::Key_Escape, ui_->findText, nullptr, nullptr, Qt::WidgetShortcut);
  connect(leave, &QShortcut::activated, this, [this] {
    ui_->findText->clear();
    ui_->txtric->setFocus();
  });
}

void TrafficPanel::SetSearch() {
  ui_->txtric->SetSearch({ui_->findText->text(), ui_->actionFindCase->isChecked(),
                          ui_->actionFindExpression->isChecked(), ui_->actionCodes->isChecked(),
                          ui_->actionHex->isChecked()});
  ShowSearch();
}

void TrafficPanel::ShowSearch() {
  const ReceivedTextView::SearchState& search = ui_->txtric->Search();
  const bool looks = !ui_->findText->text().isEmpty() && search.error.isEmpty();
  const bool vain = looks && search.counted && search.count == 0;
  QString note;
  if (looks) note = tr("%1/%2%3").arg(search.number).arg(search.count).arg(search.counted ? "" : "…");
  ui_->findText->SetNote(vain ? tr("none") : note);
  ui_->findText->SetError(search.error);
  ui_->findText->SetInVain(vain || !search.error.isEmpty());
}

void TrafficPanel::Find(SearchDirection direction) {
  if (ui_->findText->text().isEmpty()) {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
  } else {
    ui_->txtric->FindNext(direction);  // the count tells when there is nothing
  }
}

void TrafficPanel::WireCopy() {
  ReceivedTextView* view = ui_->txtric;
  connect(ui_->actionCopyAsShown, &QAction::triggered, view, &ReceivedTextView::CopyAsShown);
  connect(ui_->actionCopyBytes, &QAction::triggered, view, &ReceivedTextView::CopyAsHex);
  for (const QAction* copy : CopyActions()) {
    connect(copy, &QAction::triggered, this, [this, view] {
      if (!view->HasSelection()) emit told(tr("nothing is selected in the display"));
    });
  }
  connect(ui_->actionSaveDisplay, &QAction::triggered, this, &TrafficPanel::SaveDisplay);
}

void TrafficPanel::AskForTime() {
  ReceivedTextView* view = ui_->txtric;
  const auto range = view->KeptTimes();
  if (!range) return emit told(tr("go to time: the display is empty"));
  const QString kept = tr("The display goes from %1 to %2.").arg(range->first, range->last);
  auto* prompt = new TimePrompt(this, range->first.left(8), kept, [view, kept](const QString& time) {
    const auto wanted = TimeOfDay(time.toStdString());
    if (!wanted) return tr("“%1” is no time.").arg(time);
    return view->ShowTime(*wanted) ? QString() : tr("Nothing came at %1. %2").arg(time, kept);
  });
  prompt->open();
}

void TrafficPanel::SaveDisplay() {
  auto* dialog = new QFileDialog(this, tr("Save the display as text"));
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix("txt");
  dialog->setNameFilters({tr("Text (*.txt)"), tr("All files (*)")});
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QFileDialog::fileSelected, this, &TrafficPanel::SaveTo);
  dialog->open();  // traffic goes on behind it
}

void TrafficPanel::SaveTo(const QString& file) {
  std::uint64_t lines = 0;
  const std::error_code error = ui_->txtric->Save(std::filesystem::path(file.toStdString()), lines);
  if (error)
    return emit told(tr("%1 was not written: %2").arg(file, QString::fromStdString(error.message())));
  emit told(tr("%1 lines of the display are in %2").arg(lines).arg(file));
}

}  // namespace quarlin
