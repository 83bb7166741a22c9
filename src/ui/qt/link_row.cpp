// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/link_row.h"

#include <QAction>
#include <QEvent>
#include <QLineEdit>
#include <algorithm>

#include "ui_link_row.h"

namespace quarlin {
namespace {

constexpr int partSpacing = 12;  // pixels

}  // namespace

LinkRow::LinkRow(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::LinkRow>()) {
  ui_->setupUi(this);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  // The edit field tells of a loaded configuration as well, the box of the user's own choice alone.
  connect(ui_->cboSerial->lineEdit(), &QLineEdit::textChanged, this, &LinkRow::ShowFields);
  WireKeys();
  ShowFields();
}

LinkRow::~LinkRow() = default;

void LinkRow::ShowAtEnd(QAction& action) {
  ui_->sidePanelButton->setDefaultAction(&action);
}

// Enter in any of the fields connects.
void LinkRow::WireKeys() {
  for (const QComboBox* box : {ui_->cboSerial, ui_->ComboBaud, ui_->ComboWord}) {
    connect(box->lineEdit(), &QLineEdit::returnPressed, ui_->cmdOpen, &QPushButton::click);
  }
  for (const QLineEdit* line : {ui_->txtIp, ui_->txtPort, ui_->txtBind}) {
    connect(line, &QLineEdit::returnPressed, ui_->cmdOpen, &QPushButton::click);
  }
}

void LinkRow::ShowFields() {
  const bool network = ui_->cboSerial->currentText().compare("NET", Qt::CaseInsensitive) == 0;
  ui_->serialFields->setVisible(!network);
  ui_->networkFields->setVisible(network);
}

bool LinkRow::FitsInOneRow(int width) const {
  return ui_->settingsPart->minimumSizeHint().width() + partSpacing + ui_->linesPart->sizeHint().width() <=
         width;
}

QSize LinkRow::sizeHint() const {
  const QSize settings = ui_->settingsPart->sizeHint();
  const QSize lines = ui_->linesPart->sizeHint();
  return {settings.width() + partSpacing + lines.width(), heightForWidth(width())};
}

QSize LinkRow::minimumSizeHint() const {
  const QSize settings = ui_->settingsPart->minimumSizeHint();
  const QSize lines = ui_->linesPart->minimumSizeHint();
  return {std::max(settings.width(), lines.width()), heightForWidth(width())};
}

int LinkRow::heightForWidth(int width) const {
  const int settings = ui_->settingsPart->sizeHint().height();
  const int lines = ui_->linesPart->sizeHint().height();
  return FitsInOneRow(width) ? std::max(settings, lines) : settings + partSpacing + lines;
}

void LinkRow::PlaceParts() {
  const int lineWidth = ui_->linesPart->sizeHint().width();
  const int below = ui_->settingsPart->sizeHint().height() + partSpacing;
  if (FitsInOneRow(width())) {
    ui_->settingsPart->setGeometry(0, 0, width() - lineWidth - partSpacing, height());
    ui_->linesPart->setGeometry(width() - lineWidth, 0, lineWidth, height());
  } else {
    ui_->settingsPart->setGeometry(0, 0, width(), below - partSpacing);
    ui_->linesPart->setGeometry(width() - lineWidth, below, lineWidth, height() - below);
  }
}

void LinkRow::resizeEvent(QResizeEvent* event) {
  PlaceParts();
  updateGeometry();  // the height follows from the width
  QWidget::resizeEvent(event);
}

// A part wants another size.
bool LinkRow::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    updateGeometry();
    PlaceParts();
  }
  return QWidget::event(event);
}

}  // namespace quarlin
