// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/script_view.h"

#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexerjavascript.h>

#include <QEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <array>

#include "ui/editor/indenter.h"
#include "ui/editor/script_colors.h"
#include "ui/editor/vbscript_lexer.h"

namespace quarlin {
namespace {

enum Margin { breakpointMargin = 0, numberMargin = 1, foldMargin = 2 };
enum MarkerNumber { breakpointMarker = 1, conditionalMarker = 2, runningMarker = 3, runningLineMarker = 4 };

constexpr int blanksPerLevel = 2;

}  // namespace

ScriptView::ScriptView(QWidget* parent)
    : QsciScintilla(parent),
      vbscript_(new VbscriptLexer(this)),
      jscript_(new QsciLexerJavaScript(this)),
      indenter_(new Indenter(*this)) {
  setUtf8(true);
  setIndentationsUseTabs(false);
  setIndentationWidth(blanksPerLevel);
  setTabWidth(blanksPerLevel);
  setTabIndents(true);
  setBackspaceUnindents(true);
  setBraceMatching(QsciScintilla::SloppyBraceMatch);
  setCaretLineVisible(true);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  SendScintilla(SCI_SETCARETPERIOD, 0);  // a blinking cursor would wake an idle program twice a second
  errorSquiggle_ = indicatorDefine(QsciScintilla::SquiggleIndicator);
  foundBox_ = indicatorDefine(QsciScintilla::FullBoxIndicator);
  setIndicatorDrawUnder(true, foundBox_);
  Send(SCI_INDICSETALPHA, foundBox_, 255);
  SetUpMargins();
  SetUpKeys();
  SetLanguage("VBScript");
}

void ScriptView::SetUpMargins() {
  setMarginType(breakpointMargin, QsciScintilla::SymbolMargin);
  setMarginMarkerMask(breakpointMargin, 1 << breakpointMarker | 1 << conditionalMarker | 1 << runningMarker);
  setMarginWidth(breakpointMargin, 16);
  setMarginSensitivity(breakpointMargin, true);
  setMarginType(numberMargin, QsciScintilla::NumberMargin);
  setMarginMarkerMask(numberMargin, 0);
  setMarginSensitivity(numberMargin, false);
  setFolding(QsciScintilla::BoxedTreeFoldStyle, foldMargin);
  markerDefine(QsciScintilla::Circle, breakpointMarker);
  markerDefine(QsciScintilla::CircledPlus, conditionalMarker);
  markerDefine(QsciScintilla::RightArrow, runningMarker);
  markerDefine(QsciScintilla::Background, runningLineMarker);
  connect(this, &QsciScintilla::linesChanged, this, &ScriptView::FitLineNumbers);
  connect(this, &QsciScintilla::marginClicked, this, [this](int margin, int line, Qt::KeyboardModifiers) {
    if (margin == breakpointMargin) emit breakpointWanted(line + 1);
  });
}

// Keys that the window has for something else, or that nobody expects of an editor.
void ScriptView::SetUpKeys() {
  const std::pair<int, Qt::Key> keys[] = {
      {Qt::CTRL, Qt::Key_D},     {Qt::CTRL, Qt::Key_L}, {Qt::CTRL | Qt::SHIFT, Qt::Key_L},
      {Qt::CTRL, Qt::Key_T},     {Qt::CTRL, Qt::Key_U}, {Qt::CTRL | Qt::SHIFT, Qt::Key_U},
      {Qt::CTRL, Qt::Key_Slash},
  };
  for (const auto& [modifiers, key] : keys) {
    QsciCommand* command = standardCommands()->boundTo(modifiers | key);
    if (command == nullptr) continue;
    if (command->key() == (modifiers | key)) {
      command->setKey(0);
    } else {
      command->setAlternateKey(0);
    }
  }
}

void ScriptView::SetLanguage(std::string_view language) {
  const bool isVbscript = language == "VBScript";
  QsciLexer* wanted = isVbscript ? static_cast<QsciLexer*>(vbscript_) : jscript_;
  if (lexer() == wanted) return;
  setLexer(wanted);
  setAutoIndent(!isVbscript);
  indenter_->SetEnabled(isVbscript);
  DressUp();
}

void ScriptView::SetObjectNames(const std::vector<std::string>& names) {
  vbscript_->SetObjectNames(names);
  if (lexer() != vbscript_) return;
  setLexer(vbscript_);
  DressUp();
}

void ScriptView::ShowText(const std::string& utf8, std::string_view lineEnd) {
  const QSignalBlocker quiet(this);  // nobody has typed
  SendScintilla(SCI_SETTEXT, utf8.c_str());
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  SendScintilla(SCI_SETSAVEPOINT);
  setScrollWidth(1);  // grows with the lines that come into sight, and never shrinks
  setEolMode(lineEnd == "\r\n" ? EolWindows : lineEnd == "\r" ? EolMac : EolUnix);
  MarkError(0, 0);
  FitLineNumbers();
}

void ScriptView::ReplaceText(const std::string& utf8) {
  int line = 0, column = 0;
  getCursorPosition(&line, &column);
  const int first = firstVisibleLine();
  beginUndoAction();
  SendScintilla(SCI_TARGETWHOLEDOCUMENT);
  SendScintilla(SCI_REPLACETARGET, utf8.size(), utf8.c_str());
  endUndoAction();
  setCursorPosition(std::min(line, lines() - 1), column);
  setFirstVisibleLine(first);
}

std::string ScriptView::Text() const {
  const QByteArray utf8 = bytes(0, length());
  return std::string(utf8.constData(), static_cast<std::size_t>(length()));
}

void ScriptView::GoTo(int line, int column) {
  ensureLineVisible(line - 1);
  setCursorPosition(line - 1, column);
  ensureCursorVisible();
}

void ScriptView::MarkError(int line, int column) {
  clearIndicatorRange(0, 0, lines(), 0, errorSquiggle_);
  if (line < 1 || line > lines()) return;
  const auto lineStart = SendScintilla(SCI_POSITIONFROMLINE, line - 1);
  const auto lineEnd = SendScintilla(SCI_GETLINEENDPOSITION, line - 1);
  const auto at = Send(SCI_POSITIONRELATIVE, lineStart, static_cast<long>(column));
  long begin = std::min<long>(at == 0 && column > 0 ? lineEnd : at, lineEnd);
  long end = std::min<long>(Send(SCI_WORDENDPOSITION, begin, 1), lineEnd);
  if (end == begin && begin < lineEnd) end = Send(SCI_POSITIONAFTER, begin);
  if (end == begin) begin = Send(SCI_WORDSTARTPOSITION, lineEnd, 1);  // behind the line's last word
  if (end == begin) begin = SendScintilla(SCI_GETLINEINDENTPOSITION, line - 1);
  SendScintilla(SCI_SETINDICATORCURRENT, errorSquiggle_);
  Send(SCI_INDICATORFILLRANGE, begin, end - begin);
}

void ScriptView::MarkFound(const std::vector<Place>& places) {
  SendScintilla(SCI_SETINDICATORCURRENT, foundBox_);
  Send(SCI_INDICATORCLEARRANGE, 0, length());
  for (const Place& place : places) {
    Send(SCI_INDICATORFILLRANGE, place.begin, place.end - place.begin);
  }
}

void ScriptView::SetRunningLine(int line) {
  markerDeleteAll(runningMarker);
  markerDeleteAll(runningLineMarker);
  setCaretLineVisible(line < 1);  // it would cover the mark of the same line
  if (line < 1) return;
  markerAdd(line - 1, runningMarker);
  markerAdd(line - 1, runningLineMarker);
  ensureLineVisible(line - 1);
}

int ScriptView::SetBreakpoint(int line, bool set, bool conditional) {
  markerDelete(line - 1, breakpointMarker);
  markerDelete(line - 1, conditionalMarker);
  return set ? markerAdd(line - 1, conditional ? conditionalMarker : breakpointMarker) : -1;
}

void ScriptView::RemoveBreakpoints() {
  markerDeleteAll(breakpointMarker);
  markerDeleteAll(conditionalMarker);
}

void ScriptView::ToggleComment() {
  const QString sign = lexer() == vbscript_ ? "' " : "// ";
  int first = 0, last = 0, column = 0, lastColumn = 0;
  if (hasSelectedText()) {
    getSelection(&first, &column, &last, &lastColumn);
    if (lastColumn == 0 && last > first) --last;
  } else {
    getCursorPosition(&first, &column);
    last = first;
  }
  const auto isComment = [&](int line) { return text(line).trimmed().startsWith(sign.trimmed()); };
  const auto isBlank = [&](int line) { return text(line).trimmed().isEmpty(); };
  bool all = true;
  for (int line = first; line <= last; ++line) all = all && (isBlank(line) || isComment(line));
  beginUndoAction();
  for (int line = first; line <= last; ++line) {
    if (isBlank(line)) continue;
    const auto begin = static_cast<int>(SendScintilla(SCI_GETLINEINDENTPOSITION, line));
    if (all) {
      const QString content = text(line).trimmed();
      const auto cut = content.startsWith(sign) ? sign.size() : sign.trimmed().size();
      Send(SCI_DELETERANGE, begin, static_cast<long>(cut));
    } else {
      SendScintilla(SCI_INSERTTEXT, static_cast<unsigned long>(begin), sign.toUtf8().constData());
    }
  }
  endUndoAction();
}

// A letter with Alt that is nobody's in the window is meant for nothing, and not for the text.
void ScriptView::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  const bool isLetter = event->modifiers() == Qt::AltModifier && !text.isEmpty() && text.front().isPrint();
  if (isLetter) return event->ignore();
  QsciScintilla::keyPressEvent(event);
}

void ScriptView::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) DressUp();
}

void ScriptView::DressUp() {
  const ScriptColors colors(palette());
  DressLexer(colors);
  setCaretForegroundColor(colors.text);
  setCaretLineBackgroundColor(colors.caretLine);
  setSelectionBackgroundColor(colors.selection);
  setSelectionForegroundColor(colors.selectedText);
  setMarginsBackgroundColor(colors.margin);
  setMarginBackgroundColor(breakpointMargin, colors.margin);
  setMarginsForegroundColor(colors.faint);
  setFoldMarginColors(colors.margin, colors.margin);
  setMatchedBraceBackgroundColor(colors.brace);
  setMatchedBraceForegroundColor(colors.text);
  setUnmatchedBraceBackgroundColor(colors.paper);
  setUnmatchedBraceForegroundColor(colors.error);
  setIndicatorForegroundColor(colors.error, errorSquiggle_);
  setIndicatorForegroundColor(colors.found, foundBox_);
  for (const auto marker :
       {SC_MARKNUM_FOLDER, SC_MARKNUM_FOLDEROPEN, SC_MARKNUM_FOLDERSUB, SC_MARKNUM_FOLDERTAIL,
        SC_MARKNUM_FOLDEREND, SC_MARKNUM_FOLDEROPENMID, SC_MARKNUM_FOLDERMIDTAIL}) {
    SendScintilla(SCI_MARKERSETFORE, static_cast<unsigned long>(marker), colors.margin);
    SendScintilla(SCI_MARKERSETBACK, static_cast<unsigned long>(marker), colors.faint);
  }
  for (const int marker : {breakpointMarker, conditionalMarker}) {
    setMarkerForegroundColor(colors.error, marker);
    setMarkerBackgroundColor(colors.error, marker);
  }
  setMarkerForegroundColor(colors.paper, conditionalMarker);
  setMarkerForegroundColor(colors.text, runningMarker);
  setMarkerBackgroundColor(QColor(0xE0A800), runningMarker);
  setMarkerBackgroundColor(colors.running, runningLineMarker);
  setCallTipsBackgroundColor(palette().color(QPalette::ToolTipBase));
  setCallTipsForegroundColor(palette().color(QPalette::ToolTipText));
  FitLineNumbers();
}

void ScriptView::DressLexer(const ScriptColors& colors) {
  QsciLexer& current = *lexer();
  const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  current.setFont(font, -1);
  current.setPaper(colors.paper, -1);
  current.setColor(colors.text, -1);
  current.setDefaultPaper(colors.paper);
  current.setDefaultColor(colors.text);
  current.setDefaultFont(font);
  setColor(colors.text);
  setPaper(colors.paper);
  setMarginsFont(font);
  struct StyleColor {
    int style;
    const QColor& color;
  };
  const std::array vbscript{StyleColor{VbscriptLexer::Comment, colors.comment},
                            StyleColor{VbscriptLexer::Number, colors.number},
                            StyleColor{VbscriptLexer::Keyword, colors.keyword},
                            StyleColor{VbscriptLexer::String, colors.string},
                            StyleColor{VbscriptLexer::UnclosedString, colors.error},
                            StyleColor{VbscriptLexer::Date, colors.number},
                            StyleColor{VbscriptLexer::Function, colors.function},
                            StyleColor{VbscriptLexer::Object, colors.object}};
  const std::array jscript{StyleColor{QsciLexerJavaScript::Comment, colors.comment},
                           StyleColor{QsciLexerJavaScript::CommentLine, colors.comment},
                           StyleColor{QsciLexerJavaScript::CommentDoc, colors.comment},
                           StyleColor{QsciLexerJavaScript::CommentLineDoc, colors.comment},
                           StyleColor{QsciLexerJavaScript::Number, colors.number},
                           StyleColor{QsciLexerJavaScript::Keyword, colors.keyword},
                           StyleColor{QsciLexerJavaScript::DoubleQuotedString, colors.string},
                           StyleColor{QsciLexerJavaScript::SingleQuotedString, colors.string},
                           StyleColor{QsciLexerJavaScript::RawString, colors.string},
                           StyleColor{QsciLexerJavaScript::Regex, colors.string},
                           StyleColor{QsciLexerJavaScript::UnclosedString, colors.error}};
  const auto dress = [&current](const auto& table) {
    for (const StyleColor& row : table) current.setColor(row.color, row.style);
  };
  if (&current == vbscript_) {
    dress(vbscript);
  } else {
    dress(jscript);
  }
}

void ScriptView::FitLineNumbers() {
  setMarginWidth(numberMargin, QString(' ') + QString::number(std::max(lines(), 100)));
}

}  // namespace quarlin
