// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/qt_prompts.h"

#include <QApplication>
#include <QInputDialog>
#include <QString>
#include <utility>

namespace quarlin {
namespace {

QString Shown(std::string_view bytes) {
  return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QString Shown(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// The start of a text that would take minutes to lay out, or push the buttons off the screen.
QString Shortened(const QString& text) {
  constexpr qsizetype mostCharacters = 2048;
  constexpr qsizetype mostLines = 32;
  const QString start = text.left(mostCharacters).section('\n', 0, mostLines - 1);
  return start.size() < text.size() ? start + QChar(0x2026) : text;
}

QMessageBox::StandardButton StandardButtonOf(BoxButton button) {
  switch (button) {
    case BoxButton::Ok:
      return QMessageBox::Ok;
    case BoxButton::Cancel:
      return QMessageBox::Cancel;
    case BoxButton::Abort:
      return QMessageBox::Abort;
    case BoxButton::Retry:
      return QMessageBox::Retry;
    case BoxButton::Ignore:
      return QMessageBox::Ignore;
    case BoxButton::Yes:
      return QMessageBox::Yes;
    case BoxButton::No:
      return QMessageBox::No;
  }
  return QMessageBox::Ok;
}

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Exclamation:
      return QMessageBox::Warning;
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

// A box that opens while a dialog is in front belongs to the dialog; else to the window that the user works
// in, which another one that came up with its box would cover.
QWidget* QtPrompts::Parent() const {
  if (QWidget* dialog = QApplication::activeModalWidget()) return dialog;
  QWidget* active = QApplication::activeWindow();
  return active != nullptr ? active : window_.data();
}

QMessageBox* QtPrompts::MakeBox(const QString& text, const QString& title) const {
  auto* box = new QMessageBox(QMessageBox::NoIcon, title, Shortened(text), QMessageBox::NoButton, Parent());
  box->setObjectName("messageBox");
  box->setTextFormat(Qt::PlainText);
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  return box;
}

void QtPrompts::Run(QDialog& box) {
  const QPointer<QDialog> outer = std::exchange(box_, &box);
  box.exec();
  box_ = outer;
}

void QtPrompts::ShowMessage(std::string_view text, std::string_view title) {
  // Guarded, since its window, which owns it, may be gone when it returns.
  const QPointer<QMessageBox> box = MakeBox(Shown(text), Shown(title));
  box->setStandardButtons(QMessageBox::Ok);
  Run(*box);
  delete box.data();
}

int QtPrompts::MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) {
  const BoxStyle look = BoxStyleOf(style);
  const QPointer<QMessageBox> box = MakeBox(Shown(text), Shown(title));
  box->setIcon(IconOf(look.icon));
  for (std::size_t i = 0; i < look.count; ++i) box->addButton(StandardButtonOf(look.buttons[i]));
  box->setDefaultButton(StandardButtonOf(look.defaultButton));
  Run(*box);
  BoxButton pressed = look.EscapeButton();
  for (std::size_t i = 0; i < look.count && box; ++i) {
    const auto* button = box->clickedButton();
    if (button != nullptr && button == box->button(StandardButtonOf(look.buttons[i])))
      pressed = look.buttons[i];
  }
  delete box.data();
  return static_cast<int>(pressed);
}

std::optional<std::u16string> QtPrompts::InputBox(std::u16string_view prompt, std::u16string_view title,
                                                  std::u16string_view proposal) {
  const QPointer<QInputDialog> box = new QInputDialog(Parent());
  box->setObjectName("inputBox");
  box->setWindowTitle(Shown(title));
  box->setLabelText(Shortened(Shown(prompt)));
  box->setTextValue(Shown(proposal));
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  Run(*box);
  std::optional<std::u16string> text;
  if (box && box->result() == QDialog::Accepted) text = box->textValue().toStdU16String();
  delete box.data();
  return text;
}

bool QtPrompts::Confirm(std::string_view question, std::string_view title) {
  const QPointer<QMessageBox> box = MakeBox(Shown(question), Shown(title));
  box->setIcon(QMessageBox::Question);
  box->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  Run(*box);
  const bool yes = !box || box->result() != QMessageBox::No;
  delete box.data();
  return yes;
}

SaveAnswer QtPrompts::AskToSave(std::string_view question, std::string_view title) {
  const QPointer<QMessageBox> box = MakeBox(Shown(question), Shown(title));
  box->setIcon(QMessageBox::Question);
  box->setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  box->setDefaultButton(QMessageBox::Save);
  Run(*box);
  const int result = box ? box->result() : QMessageBox::Cancel;
  delete box.data();
  if (result == QMessageBox::Save) return SaveAnswer::Save;
  return result == QMessageBox::Discard ? SaveAnswer::Discard : SaveAnswer::Cancel;
}

void QtPrompts::Dismiss() {
  if (box_) box_->reject();
}

}  // namespace quarlin
