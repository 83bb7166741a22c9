#include "ui/qt/qt_prompts.h"

#include <QMessageBox>
#include <QString>

namespace quarlin {
namespace {

QString Shown(std::string_view bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

}  // namespace

void QtPrompts::ShowMessage(std::string_view text, std::string_view title) {
  // Guarded, since its window, which owns it, may be gone when it returns.
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::NoIcon, Shown(title), Shown(text), QMessageBox::Ok, window_);
  box->setObjectName("messageBox");
  box->setTextFormat(Qt::PlainText);
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  box_ = box;
  box->exec();
  delete box.data();
}

void QtPrompts::Dismiss() {
  if (auto* dialog = qobject_cast<QDialog*>(box_.data())) dialog->reject();
}

}  // namespace quarlin
