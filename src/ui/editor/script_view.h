// SPDX-License-Identifier: GPL-3.0-or-later
// The text of a script, to be edited: coloured by its language, with line numbers, folding, the mark of an
// error, and room for what a debugger shows. Lines count from 1, columns from 0.
#pragma once

#include <Qsci/qsciscintilla.h>

#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

class Indenter;
class VbscriptLexer;
struct ScriptColors;

class ScriptView : public QsciScintilla {
  Q_OBJECT

 public:
  explicit ScriptView(QWidget* parent = nullptr);

  // "VBScript" or "JScript".
  void SetLanguage(std::string_view language);
  void SetObjectNames(const std::vector<std::string>& names);  // see VbscriptLexer

  // A new text, with nothing to undo, and told to nobody. `lineEnd` is what Enter puts in.
  void ShowText(const std::string& utf8, std::string_view lineEnd);

  // The same as a change that Undo takes back; the cursor stays about where it was.
  void ReplaceText(const std::string& utf8);

  std::string Text() const;

  // Puts the cursor there and brings it into sight.
  void GoTo(int line, int column);

  // A squiggle under the word at the place; the cursor stays. Line 0 takes it away.
  void MarkError(int line, int column);

  // Colours these places instead of those before. In bytes, in ascending order, from `begin` up to `end`.
  struct Place {
    long begin = 0;
    long end = 0;
  };
  void MarkFound(const std::vector<Place>& places);

  // For a debugger: the line where the script stands, 0 for none, and the lines where it is to stop.
  void SetRunningLine(int line);
  // A mark moves with its line; SetBreakpoint gives its handle.
  int SetBreakpoint(int line, bool set, bool conditional = false);
  void RemoveBreakpoints();

  // Of the lines that the cursor or the selection touches: takes the sign in front of them away when all
  // have it, else puts it there.
  void ToggleComment();

 signals:
  void breakpointWanted(int line);  // a click left of the line numbers

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // The component's own call takes its first number without a sign.
  long Send(unsigned message, long first = 0, long second = 0) const {
    return SendScintilla(message, static_cast<unsigned long>(first), second);
  }

  void SetUpMargins();
  void SetUpKeys();
  void DressUp();
  void DressLexer(const ScriptColors& colors);
  void FitLineNumbers();

  VbscriptLexer* vbscript_;
  QsciLexer* jscript_;
  Indenter* indenter_;
  int errorSquiggle_ = -1;
  int foundBox_ = -1;
};

}  // namespace quarlin
