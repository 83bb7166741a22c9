// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/find_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "ui/editor/script_view.h"

namespace quarlin {
namespace {

constexpr std::size_t mostMarked = 50'000;

QCheckBox* Option(const QString& text, const char* name, const QString& toolTip) {
  auto* box = new QCheckBox(text);
  box->setObjectName(name);
  box->setToolTip(toolTip);
  return box;
}

QLineEdit* Edit(const char* name, const QString& placeholder, const QString& toolTip) {
  auto* edit = new QLineEdit;
  edit->setObjectName(name);
  edit->setPlaceholderText(placeholder);
  edit->setAccessibleName(placeholder);
  edit->setToolTip(toolTip);
  edit->setClearButtonEnabled(true);
  return edit;
}

QPushButton* Button(const QString& text, const char* name, const QString& toolTip) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  button->setToolTip(toolTip);
  button->setAutoDefault(false);
  return button;
}

QString ShownOf(const ScriptView& view) {
  return QString::fromUtf8(view.Text());
}

}  // namespace

FindBar::FindBar(ScriptView& view, QWidget* parent)
    : QWidget(parent),
      view_(view),
      find_(Edit("editorFind", tr("Find"),
                 tr("Enter or F3 finds on, Shift+F3 backward, Escape closes this bar"))),
      with_(Edit("editorReplace", tr("Replace with"),
                 tr("What takes the place of the text found; in an expression \\1 is its first group"))),
      case_(Option(tr("C&ase"), "editorFindCase", tr("Capitals count"))),
      word_(Option(tr("&Word"), "editorFindWord", tr("Whole words only"))),
      expression_(Option(tr("E&xpression"), "editorFindExpression",
                         tr("A regular expression; ^ and $ are the ends of a line"))),
      note_(new QLabel) {
  note_->setObjectName("editorFindNote");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(4);
  column->addWidget(MakeFindRow());
  replaceRow_ = MakeReplaceRow();
  column->addWidget(replaceRow_);
  // From one text to the other first, and to the buttons of both behind them.
  setTabOrder(find_, with_);
  setTabOrder(with_, case_);
  connect(find_, &QLineEdit::textChanged, this, &FindBar::LookAgain);
  for (QCheckBox* box : {case_, word_, expression_}) {
    connect(box, &QCheckBox::toggled, this, &FindBar::LookAgain);
  }
  hide();
}

QWidget* FindBar::MakeFindRow() {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  auto* next = Button(tr("&Next"), "editorFindNext", tr("The next place (F3)"));
  auto* previous = Button(tr("&Previous"), "editorFindPrevious", tr("The place before (Shift+F3)"));
  connect(next, &QPushButton::clicked, this, &FindBar::FindNext);
  connect(previous, &QPushButton::clicked, this, &FindBar::FindPrevious);
  note_->setMinimumWidth(fontMetrics().horizontalAdvance("9999 places"));
  line->addWidget(find_, 1);
  for (QWidget* widget : std::initializer_list<QWidget*>{case_, word_, expression_, next, previous, note_}) {
    line->addWidget(widget);
  }
  return row;
}

QWidget* FindBar::MakeReplaceRow() {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  auto* one = Button(tr("Repla&ce"), "editorReplaceOne", tr("Replaces what is selected and finds on"));
  auto* all = Button(tr("Replace a&ll"), "editorReplaceAll", tr("Replaces every place in the script"));
  connect(one, &QPushButton::clicked, this, &FindBar::Replace);
  connect(all, &QPushButton::clicked, this, &FindBar::ReplaceAll);
  line->addWidget(with_, 1);
  line->addWidget(one);
  line->addWidget(all);
  return row;
}

void FindBar::Open(bool withReplacement) {
  const QString selected = view_.selectedText();
  if (!selected.isEmpty() && !selected.contains('\n') && !selected.contains('\r')) find_->setText(selected);
  replaceRow_->setVisible(withReplacement);
  show();
  find_->setFocus(Qt::ShortcutFocusReason);
  find_->selectAll();
  LookAgain();
}

void FindBar::Close() {
  hide();
  view_.MarkFound({});
  view_.setFocus();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Escape) {
    Close();
  } else if (enter && with_->hasFocus()) {
    Replace();
  } else if (enter) {
    event->modifiers() & Qt::ShiftModifier ? FindPrevious() : FindNext();
  } else {
    QWidget::keyPressEvent(event);
  }
}

TextFinder FindBar::Finder() const {
  return TextFinder({find_->text(), case_->isChecked(), word_->isChecked(), expression_->isChecked()});
}

// What the view counts in bytes of UTF-8 is counted here in units of UTF-16.
FoundText FindBar::Selection() const {
  const auto units = [this](unsigned int message) {
    const auto end = static_cast<int>(view_.SendScintilla(message));
    return QString::fromUtf8(view_.bytes(0, end).constData(), end).size();
  };
  return {units(QsciScintilla::SCI_GETSELECTIONSTART), units(QsciScintilla::SCI_GETSELECTIONEND)};
}

void FindBar::Select(const FoundText& found) {
  const QString text = ShownOf(view_);
  const auto begin = static_cast<long>(QStringView(text).left(found.begin).toUtf8().size());
  const auto length = QStringView(text).mid(found.begin, found.end - found.begin).toUtf8().size();
  const auto line = view_.SendScintilla(QsciScintilla::SCI_LINEFROMPOSITION, begin);
  view_.ensureLineVisible(static_cast<int>(line));
  view_.SendScintilla(QsciScintilla::SCI_SETSEL, static_cast<unsigned long>(begin),
                      begin + static_cast<long>(length));
  view_.ensureCursorVisible();
}

void FindBar::ShowFound(const std::optional<FoundText>& found) {
  if (found) Select(*found);
}

void FindBar::TextChanged() {
  if (isVisible() && !std::exchange(told_, false)) LookAgain();
}

void FindBar::LookAgain() {
  const TextFinder finder = Finder();
  note_->setToolTip(finder.Error());
  const QString text = ShownOf(view_);
  if (isVisible()) MarkAll(finder, text);
  if (!finder.Error().isEmpty()) return note_->setText(tr("not an expression"));
  const int count = finder.Count(text);
  note_->setText(find_->text().isEmpty() ? QString()
                 : count == 1            ? tr("1 place")
                                         : tr("%1 places").arg(count));
}

void FindBar::MarkAll(const TextFinder& finder, const QString& text) {
  std::vector<ScriptView::Place> places;
  qsizetype counted = 0;  // units, which are so many bytes
  long bytes = 0;
  const auto bytesUpTo = [&](qsizetype end) {
    bytes += static_cast<long>(QStringView(text).mid(counted, end - counted).toUtf8().size());
    counted = end;
    return bytes;
  };
  for (const FoundText& found : finder.First(text, mostMarked)) {
    const long begin = bytesUpTo(found.begin);
    places.push_back({begin, bytesUpTo(found.end)});
  }
  view_.MarkFound(places);
}

void FindBar::FindNext() {
  if (find_->text().isEmpty()) return Open(false);
  LookAgain();
  ShowFound(Finder().Next(ShownOf(view_), Selection().end));
}

void FindBar::FindPrevious() {
  if (find_->text().isEmpty()) return Open(false);
  LookAgain();
  ShowFound(Finder().Previous(ShownOf(view_), Selection().begin));
}

// Only what the search itself would find is replaced, not whatever happens to be selected.
void FindBar::Replace() {
  const TextFinder finder = Finder();
  const QString text = ShownOf(view_);
  const FoundText selected = Selection();
  const auto found = finder.Next(text, selected.begin);
  if (found && found->begin == selected.begin && found->end == selected.end) {
    view_.replaceSelectedText(finder.Replacement(text, *found, with_->text()));
  }
  FindNext();
}

void FindBar::ReplaceAll() {
  QString text = ShownOf(view_);
  const int count = Finder().ReplaceAll(text, with_->text());
  if (count > 0) view_.ReplaceText(text.toStdString());
  LookAgain();
  told_ = true;
  note_->setText(tr("%1 replaced").arg(count));
}

}  // namespace quarlin
