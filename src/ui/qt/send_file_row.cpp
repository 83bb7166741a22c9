// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/send_file_row.h"

#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <filesystem>

#include "transmit/by_hand.h"
#include "ui/qt/dropped_files.h"
#include "ui_send_file_row.h"

namespace quarlin {

SendFileRow::SendFileRow(FrmMain& frm, QWidget& window)
    : frm_(frm), ui_(std::make_unique<Ui::SendFileRow>()) {
  ui_->setupUi(this);
  TakeDroppedFiles(window, [this](const QString& file) { Offer(file); });
  frm_.Hand().files.OnProgress = [this](int thousandths) { ui_->fileProgress->setValue(thousandths); };
}

SendFileRow::~SendFileRow() {
  frm_.Hand().files.OnProgress = nullptr;
}

// The dialog stands open beside the traffic.
void SendFileRow::Choose() {
  auto* dialog = new QFileDialog(window(), tr("Send file"));
  dialog->setObjectName("sendFileDialog");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  connect(dialog, &QFileDialog::fileSelected, this, &SendFileRow::Offer);
  dialog->open();
}

// Enter presses the button that has the focus, as Space does.
void SendFileRow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (enter && button != nullptr && button->hasFocus()) return button->click();
  QWidget::keyPressEvent(event);
}

void SendFileRow::Offer(const QString& file) {
  frm_.Hand().files.Choose(std::filesystem::path(QFile::encodeName(file).toStdString()));
}

}  // namespace quarlin
