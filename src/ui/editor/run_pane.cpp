// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/run_pane.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "ui/editor/script_colors.h"

namespace quarlin {
namespace {

enum Role { lineRole = Qt::UserRole, columnRole, errorRole };

// A byte is a character; what is none on the screen is a blank.
QString ShownLine(const std::string& text) {
  QString shown = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
  for (QChar& character : shown) {
    if (character < ' ') character = ' ';
  }
  return shown;
}

}  // namespace

RunPane::RunPane(QWidget* parent) : QWidget(parent), lines_(new QListWidget) {
  lines_->setObjectName("scriptOutput");
  lines_->setAccessibleName(tr("Output of the script"));
  lines_->setToolTip(
      tr("What AppendLog writes, and errors: a click or Enter on one goes to its line in the script"));
  lines_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  lines_->setUniformItemSizes(true);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 4, 0, 0);
  column->setSpacing(4);
  column->addWidget(lines_, 1);
  column->addWidget(MakeTryRow());
  WireLines();
}

QWidget* RunPane::MakeTryRow() {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  auto* label = new QLabel(tr("Tr&y"));
  hook_ = new QComboBox;
  hook_->setObjectName("tryHook");
  hook_->setToolTip(tr("Which procedure of the script gets the text"));
  hook_->addItem("ReceiveString", QVariant::fromValue(static_cast<int>(ScriptHook::ReceiveString)));
  hook_->addItem("ReceiveChar", QVariant::fromValue(static_cast<int>(ScriptHook::ReceiveChar)));
  hook_->addItem("SendString", QVariant::fromValue(static_cast<int>(ScriptHook::SendString)));
  label->setBuddy(hook_);
  text_ = new QLineEdit;
  text_->setObjectName("tryText");
  text_->setAccessibleName(tr("Text to try"));
  text_->setPlaceholderText(tr("a text, such as S S     12.50 g{0D}{0A}"));
  text_->setToolTip(
      tr("What the procedure gets, without a link; {0D} is the character with that code. Enter "
         "tries it"));
  auto* button = new QPushButton(tr("&Try it"));
  button->setObjectName("tryButton");
  button->setToolTip(
      tr("Shows above what the procedure makes of the text; starts the script where it does "
         "not run"));
  button->setAutoDefault(false);
  line->addWidget(label);
  line->addWidget(hook_);
  line->addWidget(text_, 1);
  line->addWidget(button);
  const auto ask = [this] {
    emit tryWanted(static_cast<ScriptHook>(hook_->currentData().toInt()), text_->text());
  };
  connect(button, &QPushButton::clicked, this, ask);
  connect(text_, &QLineEdit::returnPressed, this, ask);
  return row;
}

void RunPane::WireLines() {
  const auto go = [this](const QListWidgetItem* item) {
    const int line = item->data(lineRole).toInt();
    if (line > 0) emit placeWanted(line, item->data(columnRole).toInt());
  };
  connect(lines_, &QListWidget::itemClicked, this, go);
  connect(lines_, &QListWidget::itemActivated, this, go);
  lines_->installEventFilter(this);
}

void RunPane::Add(const std::vector<ScriptLine>& lines) {
  const QScrollBar& bar = *lines_->verticalScrollBar();
  const bool atEnd = bar.value() == bar.maximum();
  const QColor error = ScriptColors(palette()).error;
  for (const ScriptLine& line : lines) {
    auto* item = new QListWidgetItem(ShownLine(line.text), lines_);
    item->setData(lineRole, line.line);
    item->setData(columnRole, line.column);
    item->setData(errorRole, line.isError);
    if (line.isError) item->setForeground(error);
  }
  while (lines_->count() > static_cast<int>(ScriptOutput::mostLines)) delete lines_->takeItem(0);
  if (atEnd) lines_->scrollToBottom();
}

bool RunPane::eventFilter(QObject* list, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    return QWidget::eventFilter(list, event);
  }
  Copy();
  return true;
}

void RunPane::Copy() {
  QStringList texts;
  for (int row = 0; row < lines_->count(); ++row) {
    if (lines_->item(row)->isSelected()) texts << lines_->item(row)->text();
  }
  if (!texts.isEmpty()) QGuiApplication::clipboard()->setText(texts.join('\n'));
}

void RunPane::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) Dress();
  QWidget::changeEvent(event);
}

void RunPane::Dress() {
  const QColor error = ScriptColors(palette()).error;
  for (int row = 0; row < lines_->count(); ++row) {
    if (lines_->item(row)->data(errorRole).toBool()) lines_->item(row)->setForeground(error);
  }
}

}  // namespace quarlin
