// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/completion.h"

#include <QKeyEvent>
#include <algorithm>

#include "base/text.h"
#include "ui/editor/script_view.h"

namespace quarlin {
namespace {

constexpr int lettersToOffer = 3;
constexpr int shownRows = 12;

// The end of `before` stands in a text or a comment, where nothing is to be offered.
bool IsProse(std::string_view before, bool isVbscript) {
  char quote = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const char character = before[i];
    if (quote != 0) {
      if (character == '\\' && !isVbscript) ++i;
      if (character == quote) quote = 0;
    } else if (character == '"' || (character == '\'' && !isVbscript)) {
      quote = character;
    } else if (isVbscript ? character == '\'' : before.substr(i, 2) == "//") {
      return true;
    }
  }
  return quote != 0;
}

bool StartsIgnoringCase(std::string_view text, std::string_view start) {
  return EqualsIgnoringCase(text.substr(0, start.size()), start);
}

}  // namespace

Completion::Completion(ScriptView& view, const Vocabulary& words)
    : QObject(&view), view_(view), words_(words) {
  view.setAutoCompletionSource(QsciScintilla::AcsNone);
  view.setCallTipsStyle(QsciScintilla::CallTipsNone);
  view.SendScintilla(QsciScintilla::SCI_AUTOCSETIGNORECASE, 1L);
  view.SendScintilla(QsciScintilla::SCI_AUTOCSETMAXHEIGHT, static_cast<long>(shownRows));
  view.installEventFilter(this);
  connect(&view, &QsciScintilla::SCN_CHARADDED, this, &Completion::Typed);
  connect(&view, &QsciScintilla::SCN_AUTOCSELECTIONCHANGE, this, [this](const char* name, int, int) {
    for (const Suggestion& one : offered_) {
      if (one.name == name) emit helpChanged(QString::fromStdString(one.help));
    }
  });
  connect(&view, &QsciScintilla::SCN_AUTOCCANCELLED, this, [this] { emit helpChanged({}); });
  connect(&view, &QsciScintilla::SCN_AUTOCCOMPLETED, this, [this] { emit helpChanged({}); });
}

std::string Completion::Before() const {
  int line = 0, column = 0;
  view_.getCursorPosition(&line, &column);
  return view_.text(line).left(column).toStdString();
}

QString Completion::Word() const {
  const QString before = QString::fromStdString(Before());
  qsizetype begin = before.size();
  while (begin > 0 && (before[begin - 1].isLetterOrNumber() || before[begin - 1] == '_')) --begin;
  return before.mid(begin);
}

void Completion::Typed(int character) {
  const std::string before = Before();
  if (IsProse(before, language_ == "VBScript")) return;
  if (character == '(') return ShowCall();
  if (character == ')') view_.SendScintilla(QsciScintilla::SCI_CALLTIPCANCEL);
  if (character == '.') return Show(false);
  const QString word = Word();
  if (view_.isListActive()) {
    if (!OffersMoreThan(word.toStdString())) view_.cancelList();
  } else if (word.size() == lettersToOffer && !word[0].isDigit()) {
    Show(false);
  }
}

// Something offered begins with the word and is longer.
bool Completion::OffersMoreThan(std::string_view word) const {
  return std::any_of(offered_.begin(), offered_.end(), [&](const Suggestion& one) {
    return one.name.size() > word.size() && StartsIgnoringCase(one.name, word);
  });
}

// Enter behind a word that is complete begins a line, unless another one was chosen in the list.
bool Completion::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && view_.isListActive()) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (enter && EqualsIgnoringCase(Selected(), Word().toStdString())) view_.cancelList();
  }
  return QObject::eventFilter(watched, event);
}

std::string Completion::Selected() const {
  const auto ask = [this](void* text) {
    return view_.SendScintilla(QsciScintilla::SCI_AUTOCGETCURRENTTEXT, 0UL, text);
  };
  QByteArray text(static_cast<qsizetype>(ask(nullptr)) + 1, '\0');
  ask(text.data());
  return text.constData();
}

void Completion::Offer() {
  Show(true);
}

void Completion::Show(bool asked) {
  const std::string word = Word().toStdString();
  offered_ = words_.At(language_, Before(), view_.Text());
  std::erase_if(offered_, [&](const Suggestion& one) { return !StartsIgnoringCase(one.name, word); });
  if (asked ? offered_.empty() : !OffersMoreThan(word)) return;
  std::string list;
  for (const Suggestion& one : offered_) list += (list.empty() ? "" : " ") + one.name;
  view_.SendScintilla(QsciScintilla::SCI_AUTOCSHOW, word.size(), list.c_str());
}

void Completion::ShowCall() {
  const std::string help = words_.CallHelp(language_, Before(), view_.Text());
  if (help.empty()) return;
  const auto at = static_cast<unsigned long>(view_.SendScintilla(QsciScintilla::SCI_GETCURRENTPOS));
  view_.SendScintilla(QsciScintilla::SCI_CALLTIPSHOW, at, help.c_str());
}

}  // namespace quarlin
