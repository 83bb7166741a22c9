// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/byte_edit.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <algorithm>
#include <memory>

#include "base/scope_flag.h"

namespace quarlin {
namespace {

constexpr qsizetype mostPasted = 1 << 20;  // characters: 64 KiB in the longest way to write them
constexpr int tintAlpha = 90;

// Control characters as codes, since an editor makes its own of line ends.
QString WithCodes(const QString& text) {
  QString coded;
  for (const QChar c : text) {
    coded += c.unicode() < 0x20 || c.unicode() == 0x7F
                 ? QStringLiteral("{%1}").arg(c.unicode(), 2, 16, QChar('0')).toUpper()
                 : QString(c);
  }
  return coded;
}

}  // namespace

ByteEdit::ByteEdit(QWidget* parent) : QPlainTextEdit(parent) {
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setTabChangesFocus(true);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  connect(this, &QPlainTextEdit::textChanged, this, [this] {
    if (!writing_) emit typed();
  });
  const auto tell = [this] {
    if (!writing_ && hasFocus()) emit selected();
  };
  connect(this, &QPlainTextEdit::selectionChanged, this, tell);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, tell);
}

void ByteEdit::Write(const QString& text) {
  const ScopeFlag writing(writing_);
  setPlainText(text);
}

void ByteEdit::Show(Stretch marked, Stretch unreadable) {
  const ScopeFlag writing(writing_);
  QTextEdit::ExtraSelection tint;
  QColor color = palette().color(QPalette::Highlight);
  color.setAlpha(tintAlpha);
  tint.format.setBackground(color);
  tint.cursor = CursorAt(marked);
  QTextEdit::ExtraSelection wave;
  wave.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
  wave.format.setUnderlineColor(Qt::red);
  wave.cursor = CursorAt(unreadable);
  setExtraSelections({tint, wave});
  if (hasFocus()) return;
  setTextCursor(CursorAt({marked.end, marked.end}));
  setTextCursor(CursorAt({marked.begin, marked.begin}));
}

Stretch ByteEdit::Selected() const {
  const QTextCursor cursor = textCursor();
  return {static_cast<std::uint32_t>(cursor.selectionStart()),
          static_cast<std::uint32_t>(cursor.selectionEnd())};
}

void ByteEdit::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (forText_ && isEnter) {
    insertPlainText("{0D}");
  } else {
    QPlainTextEdit::keyPressEvent(event);
  }
}

void ByteEdit::insertFromMimeData(const QMimeData* source) {
  const QString text = source->text();
  if (text.isEmpty()) {
    emit refused(tr("the clipboard holds no text"));
  } else if (text.size() > mostPasted) {
    emit refused(tr("%L1 characters were not pasted: the calculator takes %L2 at most")
                     .arg(text.size())
                     .arg(qlonglong{65'536}));
  } else {
    insertPlainText(forText_ ? WithCodes(text) : text);
  }
}

QMimeData* ByteEdit::createMimeDataFromSelection() const {
  QString text = textCursor().selectedText();
  text.replace(QChar::ParagraphSeparator, forText_ ? QString() : QString("\n"));
  auto copy = std::make_unique<QMimeData>();
  copy->setText(text);
  return copy.release();
}

QTextCursor ByteEdit::CursorAt(Stretch place) const {
  const int last = document()->characterCount() - 1;
  QTextCursor cursor(document());
  cursor.setPosition(std::min(static_cast<int>(place.begin), last));
  cursor.setPosition(std::min(static_cast<int>(place.end), last), QTextCursor::KeepAnchor);
  return cursor;
}

}  // namespace quarlin
