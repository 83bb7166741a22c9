// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/error_panel.h"

#include <QSplitter>
#include <algorithm>

#include "ui/qt/widget_text.h"
#include "ui_error_panel.h"

namespace quarlin {

ErrorPanel::ErrorPanel(QWidget* parent)
    : QWidget(parent), ui_(std::make_unique<Ui::ErrorPanel>()), pacer_([this] { Refresh(); }) {
  ui_->setupUi(this);
  OfferKinds();
  ErrorTable* table = ui_->lstError;
  connect(table, &ErrorTable::lineWanted, this, &ErrorPanel::lineWanted);
  connect(table, &ErrorTable::clearRequested, this, &ErrorPanel::Clear);
  connect(table, &ErrorTable::shownChanged, this, &ErrorPanel::TableShown);
  connect(ui_->copyErrorsButton, &QPushButton::clicked, this, &ErrorPanel::Copy);
  connect(ui_->clearErrorsButton, &QPushButton::clicked, this, &ErrorPanel::Clear);
  connect(ui_->errorKindBox, &QComboBox::activated, this, &ErrorPanel::ChooseKind);
  ShowTools(false);
}

ErrorPanel::~ErrorPanel() {
  if (rows_ != nullptr) rows_->OnChanged = nullptr;
}

void ErrorPanel::Show(ErrorRows& rows) {
  rows_ = &rows;
  ui_->lstError->Show(rows);
  rows.OnChanged = [this] { pacer_.Request(); };
  ShowCount();
}

int ErrorPanel::OpenHeight() const {
  return ui_->lstError->isVisible() ? height() : height_;
}

void ErrorPanel::Refresh() {
  ShowCount();
  if (ui_->lstError->isVisible()) ui_->lstError->Refresh();  // else when it comes into sight
}

void ErrorPanel::ShowCount() {
  QString count = tr("none");
  if (rows_->Errors() > 0) count = QString::number(rows_->Errors());
  if (rows_->Forgotten() > 0)
    count = tr("the last %1, %2 older ones have left").arg(count).arg(rows_->Forgotten());
  ui_->errorCount->setText(count);
}

void ErrorPanel::TableShown(bool open) {
  if (!open) height_ = height();
  ShowTools(open);
  const int usual = minimumSizeHint().height() + 5 * ui_->lstError->RowHeight();
  TakeHeight(!open ? maximumHeight() : height_ > 0 ? height_ : usual);
}

// What is above it has the rest.
void ErrorPanel::TakeHeight(int wanted) {
  auto* splitter = qobject_cast<QSplitter*>(parentWidget());
  if (splitter == nullptr) return;
  QList<int> sizes = splitter->sizes();
  const int place = splitter->indexOf(this);
  if (place == 0) return;
  sizes[place - 1] = std::max(0, sizes[place - 1] + sizes[place] - wanted);
  sizes[place] = wanted;
  splitter->setSizes(sizes);
}

// A closed table takes no more room than the header.
void ErrorPanel::ShowTools(bool open) {
  for (QWidget* tool :
       std::initializer_list<QWidget*>{ui_->errorKindBox, ui_->copyErrorsButton, ui_->clearErrorsButton}) {
    tool->setVisible(open);
  }
  setMaximumHeight(open ? QWIDGETSIZE_MAX : ui_->errorHeaderLayout->sizeHint().height());
}

void ErrorPanel::OfferKinds() {
  ui_->errorKindBox->addItem(tr("All kinds"));
  for (std::size_t kind = 0; kind < errorKinds; ++kind) {
    ui_->errorKindBox->addItem(ShownText(ErrorKindName(static_cast<ErrorKind>(kind))));
  }
}

void ErrorPanel::ChooseKind() {
  const int chosen = ui_->errorKindBox->currentIndex();
  ui_->lstError->SetKind(chosen > 0 ? std::optional(static_cast<ErrorKind>(chosen - 1)) : std::nullopt);
}

void ErrorPanel::Copy() {
  const int rows = ui_->lstError->Copy();
  emit told(rows == 1 ? tr("one row of the error table copied")
                      : tr("%1 rows of the error table copied").arg(rows));
}

void ErrorPanel::Clear() {
  rows_->Clear();
  emit told(tr("the error table was cleared; counters and report stay"));
}

}  // namespace quarlin
