// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/hand_input.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>

#include "transmit/by_hand.h"
#include "ui/qt/widget_text.h"

namespace quarlin {

HandInput::HandInput(FrmMain& frm, ReceivedTextView& view, QComboBox& command)
    : frm_(frm), view_(view), command_(command), frame_(new LineFrame(view)) {
  connect(&view, &ReceivedTextView::typed, this, &HandInput::Typed);
  connect(&view, &ReceivedTextView::pasteRequested, this, &HandInput::Paste);
  command.installEventFilter(this);
  command.lineEdit()->installEventFilter(this);
  frm_.Hand().OnLinkChanged = [this] { ShowOnLine(); };
  ShowOnLine();
}

HandInput::~HandInput() {
  frm_.Hand().OnLinkChanged = nullptr;
}

void HandInput::ShowOnLine() {
  const bool onLine = frm_.Hand().typing.OnLine();
  view_.SetOnLine(onLine);
  frame_->SetOnLine(onLine);
}

bool HandInput::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool alone = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!alone || (key->key() != Qt::Key_Up && key->key() != Qt::Key_Down)) return false;
  Walk(key->key() == Qt::Key_Up);
  return true;
}

void HandInput::Walk(bool older) {
  CommandHistory& history = frm_.Hand().history;
  const std::string shown = BytesOf(command_.currentText());
  const auto next = older ? history.Older(shown) : history.Newer(shown);
  if (!next) return;
  command_.setEditText(EditText(*next));
  frm_.controls.cycle.CBOSEND.SetText(*next);
}

void HandInput::Typed(const QByteArray& keys) {
  if (!frm_.Hand().typing.Type({keys.data(), static_cast<std::size_t>(keys.size())})) {
    PutIntoCommand(QString::fromLatin1(keys));
  }
}

void HandInput::Paste() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  const QString text = data != nullptr && data->hasText() ? data->text() : QString();
  if (text.isEmpty()) return frm_.Status().Say("there is no text on the clipboard");
  if (!frm_.Hand().typing.Paste(ReceivedTextView::BytesOfText(text).toStdString())) {
    command_.setFocus(Qt::OtherFocusReason);
    command_.lineEdit()->paste();
  }
}

// A key that is no character, such as Enter, has nothing to do there.
void HandInput::PutIntoCommand(const QString& text) {
  QString printable;
  for (const QChar character : text) {
    if (character.isPrint()) printable += character;
  }
  if (printable.isEmpty()) return;
  command_.setFocus(Qt::OtherFocusReason);
  command_.lineEdit()->insert(printable);
}

}  // namespace quarlin
