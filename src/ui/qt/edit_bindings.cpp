// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/edit_bindings.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <algorithm>
#include <functional>
#include <utility>

#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

bool IsBeingTyped(const QLineEdit& edit) {
  return edit.hasFocus() && edit.isModified();
}

// A text that the user has not touched is shown from its beginning.
void ShowText(QLineEdit& edit, std::string_view text) {
  const QString shown = EditText(text);
  if (edit.text() != shown) {
    const int cursor = edit.hasFocus() ? edit.cursorPosition() : 0;
    edit.setText(shown);
    edit.setCursorPosition(cursor);
  }
  edit.setModified(false);
}

// Calls `shown` when a page that holds the widget comes into view.
class WhenShown : public QObject {
 public:
  WhenShown(QWidget& widget, QObject& parent, std::function<void()> shown)
      : QObject(&parent), shown_(std::move(shown)) {
    widget.installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Show) shown_();
    return false;
  }

 private:
  std::function<void()> shown_;
};

// A row of the list shows the first line of its tool tip as well; the entry itself stays as it is.
class DescribedRow : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const QString description = index.data(Qt::ToolTipRole).toString().section(u'\n', 0, 0);
    if (!description.isEmpty()) option->text += QStringLiteral(" \u2013 ") + description;
  }
};

}  // namespace

TextBoxBinding::TextBoxBinding(TextBox& control, QLineEdit& widget, const UserSide& user)
    : Binding(control, widget),
      control_(control),
      widget_(widget),
      user_(user),
      formReadOnly_(widget.isReadOnly()),
      formMaxLength_(widget.maxLength()) {
  QObject::connect(&widget, &QLineEdit::selectionChanged, &Context(), [this] { NoteSelection(); });
  QObject::connect(&widget, &QLineEdit::cursorPositionChanged, &Context(), [this] { NoteSelection(); });
  QObject::connect(&widget, &QLineEdit::editingFinished, &Context(), [this] { Commit(); });
  new WhenShown(widget, Context(), [this] {
    if (std::exchange(waits_, false)) ShowValue();
  });
}

void TextBoxBinding::Commit() {
  if (!widget_.isModified()) return;
  widget_.setModified(false);  // first, since a handler may let the window live
  user_.aboutToEdit(control_, widget_);
  control_.Type(BytesOf(widget_.text()));
  Show();
}

void TextBoxBinding::ShowValue() {
  const bool onHiddenPage = !widget_.isVisible() && widget_.window()->isVisible() && !widget_.isHidden();
  waits_ = onHiddenPage;
  if (onHiddenPage) return;
  ShowLimits();
  if (!IsBeingTyped(widget_)) ShowText(widget_, control_.Text());
  ShowSelection();
}

// They are the user's: a longer text of the program's is shown as it is.
void TextBoxBinding::ShowLimits() {
  const bool readOnly = formReadOnly_ || control_.Locked();
  if (widget_.isReadOnly() != readOnly) widget_.setReadOnly(readOnly);
  const int length = static_cast<int>(control_.Text().size());
  const int most = control_.MaxLength() == 0 ? formMaxLength_ : std::max(control_.MaxLength(), length);
  if (widget_.maxLength() != most) widget_.setMaxLength(most);
}

void TextBoxBinding::ShowSelection() {
  if (!control_.TakeSelectionWish()) return;
  const Marked marked = control_.Selection();
  widget_.setCursorPosition(marked.start);
  if (marked.length > 0) widget_.setSelection(marked.start, marked.length);
}

void TextBoxBinding::NoteSelection() {
  if (!widget_.hasFocus()) return;
  const bool marks = widget_.hasSelectedText();
  control_.NoteSelection({marks ? widget_.selectionStart() : widget_.cursorPosition(),
                          marks ? static_cast<int>(widget_.selectionLength()) : 0});
}

ComboBoxBinding::ComboBoxBinding(ComboBox& control, QComboBox& widget, const UserSide& user)
    : Binding(control, widget), control_(control), widget_(widget), user_(user) {
  QObject::connect(&widget, &QComboBox::activated, &Context(), [this](int index) {
    if (widget_.isEditable()) widget_.lineEdit()->setModified(false);  // a choice replaces what was typed
    user_.run([this, index] {
      user_.aboutToEdit(control_, widget_);
      // A list that changed since the last frame has other entries at these places.
      if (shownList_ == control_.ListRevision()) {
        control_.SetListIndex(index);
      } else {
        control_.SetText(BytesOf(widget_.itemText(index)));
      }
    });
  });
  if (!widget.isEditable()) return;
  widget.setCompleter(nullptr);  // it would type along
  QObject::connect(widget.lineEdit(), &QLineEdit::editingFinished, &Context(), [this] { Commit(); });
  if (widget.property("immediate").toBool()) {
    QObject::connect(widget.lineEdit(), &QLineEdit::textEdited, &Context(), [this] { Commit(); });
  }
}

void ComboBoxBinding::Commit() {
  if (!widget_.isEditable() || !widget_.lineEdit()->isModified()) return;
  widget_.lineEdit()->setModified(false);
  user_.aboutToEdit(control_, widget_);
  control_.SetText(BytesOf(widget_.currentText()));
  Show();
}

bool ComboBoxBinding::UserTypes() const {
  return widget_.isEditable() && IsBeingTyped(*widget_.lineEdit());
}

void ComboBoxBinding::ShowValue() {
  const QSignalBlocker blocker(widget_);
  if (shownList_ != control_.ListRevision()) Fill();
  if (UserTypes()) return;
  if (!widget_.isEditable()) {
    widget_.setCurrentIndex(control_.ListIndex());
    return;
  }
  // Choosing the entry sets the text as well, and moves the cursor: only where it is another.
  if (EditText(control_.Text()) != widget_.currentText()) widget_.setCurrentIndex(control_.ListIndex());
  ShowText(*widget_.lineEdit(), control_.Text());
}

// The list changes behind the back of whoever is typing or has marked a part of the text: the edit field
// stays as it is.
void ComboBoxBinding::Fill() {
  const QLineEdit* edit = widget_.lineEdit();
  const bool modified = edit != nullptr && edit->isModified();
  const QString text = widget_.currentText();
  const int cursor = edit != nullptr ? edit->cursorPosition() : 0;
  const int marked = edit != nullptr && edit->hasSelectedText() ? edit->selectionLength() : 0;
  const bool backwards = marked > 0 && cursor == edit->selectionStart();
  FillRows();
  if (edit == nullptr) return;
  widget_.setEditText(text);
  widget_.lineEdit()->setCursorPosition(cursor);
  if (marked > 0) {
    const int from = backwards ? cursor + marked : cursor - marked;
    widget_.lineEdit()->setSelection(from, cursor - from);
  }
  widget_.lineEdit()->setModified(modified);
}

void ComboBoxBinding::FillRows() {
  bool described = false;
  widget_.clear();
  for (const std::string& entry : control_.List()) {
    widget_.addItem(EditText(entry));
    const QString toolTip = ShownText(control_.ItemToolTip(widget_.count() - 1));
    if (toolTip.isEmpty()) continue;
    widget_.setItemData(widget_.count() - 1, toolTip, Qt::ToolTipRole);
    described = true;
  }
  if (described) ShowDescriptions();
  shownList_ = control_.ListRevision();
}

void ComboBoxBinding::ShowDescriptions() {
  QAbstractItemView& rows = *widget_.view();
  if (dynamic_cast<DescribedRow*>(rows.itemDelegate()) == nullptr) {
    rows.setItemDelegate(new DescribedRow(&rows));
  }
  rows.setMinimumWidth(rows.sizeHintForColumn(0) + rows.verticalScrollBar()->sizeHint().width());
}

}  // namespace quarlin
