#include "ui/qt/traffic_panel.h"

#include <QToolTip>

#include "ui_traffic_panel.h"

namespace quarlin {

TrafficPanel::TrafficPanel(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::TrafficPanel>()) {
  ui_->setupUi(this);
  WireDisplay();
  WireFind();
}

TrafficPanel::~TrafficPanel() = default;

ReceivedTextView& TrafficPanel::View() {
  return *ui_->txtric;
}

QList<QAction*> TrafficPanel::FindActions() {
  return {ui_->actionFind, ui_->actionFindNext, ui_->actionFindPrevious, ui_->actionFindCase};
}

QList<QAction*> TrafficPanel::ViewActions() {
  return {ui_->actionPause,    ui_->actionTimes, ui_->actionHex,
          ui_->actionLineEnds, Separator(),      ui_->actionClear};
}

QAction* TrafficPanel::Separator() {
  auto* separator = new QAction(this);
  separator->setSeparator(true);
  return separator;
}

void TrafficPanel::WireDisplay() {
  // What finds no room goes into the tool bar's own menu.
  ui_->tools->addActions({ui_->actionFindPrevious, ui_->actionFindNext, ui_->actionFindCase});
  ui_->tools->addSeparator();
  ui_->tools->addActions(ViewActions());

  ReceivedTextView* view = ui_->txtric;
  connect(ui_->actionPause, &QAction::toggled, view, &ReceivedTextView::SetPaused);
  connect(ui_->actionTimes, &QAction::toggled, view, &ReceivedTextView::SetShowsTimes);
  connect(ui_->actionHex, &QAction::toggled, view, &ReceivedTextView::SetHexView);
  connect(ui_->actionLineEnds, &QAction::toggled, view, &ReceivedTextView::SetShowsLineEnds);
  connect(view, &ReceivedTextView::pausedChanged, ui_->actionPause, &QAction::setChecked);
  connect(view, &ReceivedTextView::showsTimesChanged, ui_->actionTimes, &QAction::setChecked);
  connect(view, &ReceivedTextView::hexViewChanged, ui_->actionHex, &QAction::setChecked);
  connect(ui_->actionClear, &QAction::triggered, this, &TrafficPanel::clearRequested);
  connect(view, &ReceivedTextView::clearRequested, this, &TrafficPanel::clearRequested);
}

void TrafficPanel::WireFind() {
  connect(ui_->actionFind, &QAction::triggered, this, [this] {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
    ui_->findText->selectAll();
  });
  connect(ui_->actionFindNext, &QAction::triggered, this, [this] { Find(false); });
  connect(ui_->actionFindPrevious, &QAction::triggered, this, [this] { Find(true); });
  connect(ui_->findText, &QLineEdit::returnPressed, this, [this] { Find(false); });
}

void TrafficPanel::Find(bool backward) {
  const QString text = ui_->findText->text();
  if (text.isEmpty()) {
    ui_->findText->setFocus(Qt::ShortcutFocusReason);
  } else if (!ui_->txtric->Find(text, backward, ui_->actionFindCase->isChecked())) {
    const QPoint below(0, ui_->findText->height() / 2);
    QToolTip::showText(ui_->findText->mapToGlobal(below), tr("Not found"), ui_->findText);
  }
}

}  // namespace quarlin
