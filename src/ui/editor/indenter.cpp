// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/indenter.h"

#include <optional>

#include "script/edit/indentation.h"
#include "ui/editor/script_view.h"

namespace quarlin {
namespace {

std::u16string LineText(const ScriptView& view, int line) {
  return view.text(line).toStdU16String();
}

bool IsBlank(const ScriptView& view, int line) {
  return view.text(line).trimmed().isEmpty();
}

}  // namespace

Indenter::Indenter(ScriptView& view) : QObject(&view), view_(view) {
  connect(&view, &QsciScintilla::SCN_CHARADDED, this, &Indenter::Typed);
}

void Indenter::Typed(int character) {
  if (!enabled_) return;
  int line = 0, column = 0;
  view_.getCursorPosition(&line, &column);
  const bool oldMac = view_.eolMode() == QsciScintilla::EolMac;
  if (character == (oldMac ? '\r' : '\n')) {
    LineBegun(line);
  } else if (character != '\r') {
    WordTyped(line);
  }
}

// As far as the line wants to be indented that ends or branches a block; -1 for any other.
int Indenter::WantedOf(int line) const {
  const auto opener = OpenerOf(line, [this](int number) { return LineText(view_, number); });
  if (!opener) return -1;
  const bool isCase = ShapeOf(LineText(view_, line)).isCase;
  return view_.indentation(*opener) + (isCase ? view_.indentationWidth() : 0);
}

// As far as a line below it begins.
int Indenter::WantedBelow(int line) const {
  while (line > 0 && IsBlank(view_, line)) --line;
  if (line < 0) return 0;
  const bool opens = ShapeOf(LineText(view_, line)).IndentsNext();
  return view_.indentation(line) + (opens ? view_.indentationWidth() : 0);
}

void Indenter::LineBegun(int line) {
  moved_ = -1;
  const int left = line - 1;
  if (left >= 0 && IsBlank(view_, left)) {
    const int blanks = view_.indentation(left);
    view_.setIndentation(left, 0);
    view_.setIndentation(line, blanks);
  } else {
    if (const int wanted = WantedOf(left); wanted >= 0) view_.setIndentation(left, wanted);
    view_.setIndentation(line, WantedBelow(left));
  }
  view_.SendScintilla(QsciScintilla::SCI_GOTOPOS,
                      view_.SendScintilla(QsciScintilla::SCI_GETLINEINDENTPOSITION, line));
}

// "Next" goes back to its For at once, and comes back when it becomes "NextValue".
void Indenter::WordTyped(int line) {
  const int wanted = WantedOf(line);
  if (wanted >= 0 && moved_ != line && wanted < view_.indentation(line)) {
    view_.setIndentation(line, wanted);
    moved_ = line;
  } else if (wanted < 0 && moved_ == line) {
    if (line > 0) view_.setIndentation(line, WantedBelow(line - 1));
    moved_ = -1;
  }
}

}  // namespace quarlin
