// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/send_file_row.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMimeData>
#include <QPushButton>
#include <filesystem>

#include "transmit/by_hand.h"
#include "ui_send_file_row.h"

namespace quarlin {
namespace {

// The only file that is dropped; nothing for several, and for what is no file of this machine.
QString DroppedFile(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  return urls.size() == 1 ? urls.front().toLocalFile() : QString();
}

}  // namespace

SendFileRow::SendFileRow(FrmMain& frm, QWidget& window)
    : frm_(frm), ui_(std::make_unique<Ui::SendFileRow>()) {
  ui_->setupUi(this);
  window.setAcceptDrops(true);
  window.installEventFilter(this);
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

bool SendFileRow::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::DragEnter) {
    auto* drag = static_cast<QDragEnterEvent*>(event);
    if (!DroppedFile(*drag->mimeData()).isEmpty()) drag->acceptProposedAction();
    return true;
  }
  if (event->type() != QEvent::Drop) return false;
  Offer(DroppedFile(*static_cast<QDropEvent*>(event)->mimeData()));
  return true;
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
