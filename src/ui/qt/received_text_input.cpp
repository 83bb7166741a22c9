// SPDX-License-Identifier: GPL-3.0-or-later
// The display's keys, mouse and menu.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyleHints>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>

#include "ui/qt/received_text_view.h"
#include "ui/qt/row_painter.h"

namespace quarlin {
namespace {

constexpr int autoScrollPause = 50;  // ms between two steps

// Where Ctrl+C is a code for the line, the clipboard has these keys.
bool IsLineCopy(const QKeyEvent& event) {
  return event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier) && event.key() == Qt::Key_C;
}

bool IsLinePaste(const QKeyEvent& event) {
  return event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier) && event.key() == Qt::Key_V;
}

bool IsLineLeaving(const QKeyEvent& event) {
  return event.modifiers().testFlag(Qt::ControlModifier) &&
         (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab);
}

bool IsEditing(const QKeyEvent& event) {
  return event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Paste) ||
         event.matches(QKeySequence::SelectAll);
}

// Ctrl+A is 1, Ctrl+[ is 27; nothing where Ctrl is not alone.
std::optional<char> ControlCode(const QKeyEvent& event) {
  if (event.modifiers() != Qt::ControlModifier) return std::nullopt;
  if (event.key() == Qt::Key_Space) return '\0';
  if (event.key() < Qt::Key_At || event.key() > Qt::Key_Underscore) return std::nullopt;
  return static_cast<char>(event.key() - Qt::Key_At);
}

// Text that a key means, not a command: a third-level key may come as Ctrl and Alt together.
bool IsTyping(const QKeyEvent& event) {
  const auto commands = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return !event.text().isEmpty() &&
         (commands == Qt::NoModifier || commands == (Qt::ControlModifier | Qt::AltModifier));
}

}  // namespace

// A key of ours that is also a shortcut of the window is ours while we have the focus.
bool ReceivedTextView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && IsOurs(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QAbstractScrollArea::event(event);
}

bool ReceivedTextView::IsOurs(const QKeyEvent& event) const {
  if (IsLineCopy(event) || IsLinePaste(event)) return true;
  return onLine_ ? ControlCode(event) || IsTyping(event) : IsEditing(event);
}

// The Tab key is a character of the line; Shift+Tab leaves.
bool ReceivedTextView::focusNextPrevChild(bool next) {
  return (!onLine_ || !next) && QAbstractScrollArea::focusNextPrevChild(next);
}

void ReceivedTextView::keyPressEvent(QKeyEvent* event) {
  if (IsLineLeaving(*event)) {
    QAbstractScrollArea::focusNextPrevChild(event->key() == Qt::Key_Tab);
  } else if (const auto code = ControlCode(*event); onLine_ && code) {
    emit typed(QByteArray(1, *code));
  } else if (IsLinePaste(*event) || event->matches(QKeySequence::Paste)) {
    emit pasteRequested();
  } else if (IsLineCopy(*event) || event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (event->matches(QKeySequence::SelectAll)) {
    SelectAll();
  } else if (event->key() == Qt::Key_End) {
    JumpToEnd();
  } else if (event->key() == Qt::Key_Home) {
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
  } else if (IsTyping(*event)) {
    Type(event->text());
  } else {
    QAbstractScrollArea::keyPressEvent(event);  // arrows and pages
  }
}

void ReceivedTextView::inputMethodEvent(QInputMethodEvent* event) {
  if (!event->commitString().isEmpty()) Type(event->commitString());
}

QByteArray ReceivedTextView::BytesOfText(const QString& text) {
  QByteArray bytes;
  for (const char32_t character : text.toStdU32String()) {
    bytes += character > 0xFF ? '?' : static_cast<char>(character);
  }
  return bytes;
}

void ReceivedTextView::Type(const QString& text) {
  QByteArray bytes = BytesOfText(text);
  bytes.replace("\r\n", "\r").replace('\n', '\r');
  emit typed(bytes);
}

void ReceivedTextView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  UpdateAll();
}

void ReceivedTextView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  EndDrag();  // a box that comes up takes the release of the button
  UpdateAll();
}

// Above the text is its first line, below it the end of its last; nothing only for an empty display.
std::optional<ReceivedTextView::Hit> ReceivedTextView::HitAt(QPoint point) const {
  if (Ring() == nullptr || map_.FirstRow() == map_.EndRow()) return std::nullopt;
  const int rows = point.y() >= 0 ? point.y() / painter_->RowHeight() : -1;
  const std::int64_t wanted = static_cast<std::int64_t>(top_) + rows;
  const RowPlace place = map_.PlaceOf(static_cast<std::uint64_t>(std::max<std::int64_t>(wanted, 0)));
  const TextLine line = Ring()->Line(place.line);
  if (wanted >= static_cast<std::int64_t>(map_.EndRow())) {
    return Hit{{place.line, line.visible}, {place.line, line.visible}};
  }
  const double cells =
      horizontalScrollBar()->value() + static_cast<double>(point.x() - TextLeft()) / painter_->CellWidth();
  const LineRows laid(line, format_);
  return Hit{{place.line, laid.EdgeAt(place.row, cells)}, {place.line, laid.ByteAt(place.row, cells)}};
}

TextSpan ReceivedTextView::UnitAt(const Hit& hit) const {
  if (dragUnit_ == Unit::Character) return {hit.edge, hit.edge};
  const std::uint64_t number = hit.byte.line;
  const TextLine line = Ring()->Line(number);
  if (dragUnit_ == Unit::Line) return {{number, 0}, {number, line.visible}};
  return WordAt(std::string_view(line.text).substr(0, line.visible), hit.byte);
}

void ReceivedTextView::StartSelection(QPoint point, Unit unit) {
  dragging_ = true;
  dragUnit_ = unit;
  dragPoint_ = point;
  const auto hit = HitAt(point);
  hit ? selection_.Start(UnitAt(*hit)) : selection_.Clear();
  UpdateAll();
}

void ReceivedTextView::ExtendSelection(QPoint point) {
  dragPoint_ = point;
  const auto hit = HitAt(point);
  if (!hit) return;
  selection_.KeepFrom(Ring()->FirstLine());
  selection_.ExtendTo(UnitAt(*hit));
  UpdateAll();
}

void ReceivedTextView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint point = event->position().toPoint();
  const auto interval = static_cast<std::uint64_t>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  const bool third = doubleClickAt_ != 0 && event->timestamp() - doubleClickAt_ < interval &&
                     (point - dragPoint_).manhattanLength() < QApplication::startDragDistance();
  doubleClickAt_ = 0;
  if (third) {
    StartSelection(point, Unit::Line);
  } else if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    dragging_ = true;
    ExtendSelection(point);
  } else {
    StartSelection(point, Unit::Character);
  }
}

void ReceivedTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  StartSelection(event->position().toPoint(), Unit::Word);
  doubleClickAt_ = event->timestamp();
}

void ReceivedTextView::mouseMoveEvent(QMouseEvent* event) {
  if (!dragging_) return;
  const QPoint point = event->position().toPoint();
  ExtendSelection(point);
  if (viewport()->rect().contains(point)) {
    autoScroll_.stop();
  } else if (!autoScroll_.isActive()) {
    autoScroll_.start(autoScrollPause, this);
  }
}

void ReceivedTextView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) EndDrag();
}

void ReceivedTextView::EndDrag() {
  if (!dragging_) return;
  dragging_ = false;
  autoScroll_.stop();
  AdjustBars();  // the traffic has gone on meanwhile
  UpdateAll();
  QClipboard* clipboard = QGuiApplication::clipboard();
  if (clipboard->supportsSelection() && !selection_.Empty()) {
    clipboard->setText(SelectedText(), QClipboard::Selection);
  }
}

void ReceivedTextView::timerEvent(QTimerEvent* event) {
  if (event->timerId() == autoScroll_.timerId()) {
    AutoScroll();
  } else if (event->timerId() == countOn_.timerId()) {
    CountMatches();
  } else {
    QAbstractScrollArea::timerEvent(event);
  }
}

// The farther outside the pointer is, the faster.
void ReceivedTextView::AutoScroll() {
  const auto steps = [](int point, int size, int cell) {
    if (point < 0) return point / cell - 1;
    return point >= size ? (point - size) / cell + 1 : 0;
  };
  const int rows = steps(dragPoint_.y(), viewport()->height(), painter_->RowHeight());
  const int columns = steps(dragPoint_.x(), viewport()->width(), painter_->CellWidth());
  verticalScrollBar()->setValue(verticalScrollBar()->value() + rows);
  horizontalScrollBar()->setValue(horizontalScrollBar()->value() + columns);
  ExtendSelection(dragPoint_);
}

void ReceivedTextView::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const QString& text, auto action) { return menu->addAction(text, this, action); };
  add(tr("Cop&y"), &ReceivedTextView::Copy)->setEnabled(!selection_.Empty());
  add(tr("Copy as sho&wn"), &ReceivedTextView::CopyAsShown)->setEnabled(!selection_.Empty());
  add(tr("Copy &bytes as hex"), &ReceivedTextView::CopyAsHex)->setEnabled(!selection_.Empty());
  add(tr("Select &all"), &ReceivedTextView::SelectAll);
  menu->addSeparator();
  menu->addActions(actions());
  menu->popup(event->globalPos());
}

}  // namespace quarlin
