// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/errors.h"

#include <QJSEngine>
#include <QRegularExpression>
#include <array>
#include <span>

#include "script/jscript/text.h"

namespace quarlin::jscript {

using vbs::ScriptError;

namespace {

constexpr std::uint32_t scriptFacility = 0x800A0000;
constexpr std::int32_t notCaught = 5022;
constexpr std::u16string_view noSuchMemberText = u"Object doesn't support this property or method";

struct Row {
  std::u16string_view name;      // of the error's class; empty: any
  std::u16string_view fragment;  // of its message; empty: any
  std::int32_t number;
  std::u16string_view text;  // empty: the message itself
};

// The first row that fits counts.
constexpr std::array runtimeRows = std::to_array<Row>({
    {u"RangeError", u"call stack", vbs::outOfStackSpace, u"Out of stack space"},
    {u"RangeError", u"", vbs::invalidCall, u""},
    {u"ReferenceError", u"lvalue", 5008, u"Illegal assignment"},
    {u"ReferenceError", u"", 5009, u""},
    {u"TypeError", u"object [null] is not a function", 5002, u"Function expected"},
    {u"TypeError", u" of object ", vbs::noSuchMember, noSuchMemberText},
    {u"TypeError", u"is not a function", 5002, u"Function expected"},
    {u"TypeError", u"'$entry' of undefined", vbs::noSuchMember, noSuchMemberText},
    {u"TypeError", u"of undefined", 5007, u""},
    {u"TypeError", u"of null", 5007, u""},
    {u"TypeError", u"", vbs::noSuchMember, noSuchMemberText},
    {u"SyntaxError", u"regular expression", vbs::regExpSyntax, u"Syntax error in regular expression"},
    {u"SyntaxError", u"", 1002, u""},
    {u"URIError", u"", 5025, u""},
});

constexpr std::array compileRows = std::to_array<Row>({
    {u"", u"Expected token `:'", 1003, u"Expected ':'"},
    {u"", u"Expected token `;'", 1004, u"Expected ';'"},
    {u"", u"Expected token `('", 1005, u"Expected '('"},
    {u"", u"Expected token `)'", 1006, u"Expected ')'"},
    {u"", u"Expected token `]'", 1007, u"Expected ']'"},
    {u"", u"Expected token `{'", 1008, u"Expected '{'"},
    {u"", u"Expected token `}'", 1009, u"Expected '}'"},
    {u"", u"Expected token `identifier'", 1010, u"Expected identifier"},
    {u"", u"Expected token `='", 1011, u"Expected '='"},
    {u"", u"llegal character", 1014, u"Invalid character"},
    {u"", u"string", 1015, u"Unterminated string constant"},
    {u"", u"comment", 1016, u"Unterminated comment"},
    {u"", u"lvalue", 5008, u"Illegal assignment"},
    {u"", u"depth exceeded", vbs::outOfStackSpace, u"Out of stack space"},
    {u"", u"", 1002, u""},
});

const Row* FindRow(std::span<const Row> rows, const QString& name, const QString& message) {
  for (const Row& row : rows) {
    const bool named = row.name.empty() || View(name) == row.name;
    if (named && View(message).find(row.fragment) != std::u16string_view::npos) return &row;
  }
  return nullptr;
}

struct Place {
  int source = 0;  // its number; 0: not known
  vbs::Position position;
};

// The innermost frame that lies in the user's text. A trace has "function:line:column:file", an error's own
// stack "function@file:line"; columns there are from 1, and mostly missing.
Place PlaceOf(const QStringList& frames) {
  static const QRegularExpression traced(R"(:(\d+):(-?\d+):\S*script(\d+)\.js$)");
  static const QRegularExpression stacked(R"(script(\d+)\.js:(\d+)$)");
  for (const QString& frame : frames) {
    if (const auto match = traced.match(frame); match.hasMatch()) {
      const int column = std::max(match.captured(2).toInt() - 1, 0);
      return {match.captured(3).toInt(), {match.captured(1).toInt(), column}};
    }
    if (const auto match = stacked.match(frame); match.hasMatch())
      return {match.captured(1).toInt(), {match.captured(2).toInt(), 0}};
  }
  return {};
}

// "x is not defined", as the language says it.
std::u16string UndefinedName(QString message) {
  const bool known = message.endsWith(" is not defined");
  if (known) message.chop(static_cast<qsizetype>(std::size(" is not defined")) - 1);
  return std::u16string(known ? View("'" + message + "' is undefined") : View(message));
}

// The name in "Property 'x' of object ... is not a function", or nothing.
std::u16string CalledProperty(const QString& message) {
  if (!message.startsWith("Property '") || !message.endsWith("is not a function")) return {};
  return std::u16string(View(message.section('\'', 1, 1)));
}

// From 1 on; null where there is none.
std::u16string_view LineOf(std::u16string_view text, int line) {
  if (line < 1) return {};
  for (int skipped = 1; skipped < line; ++skipped) {
    const std::size_t end = text.find(u'\n');
    if (end == text.npos) return {};
    text.remove_prefix(end + 1);
  }
  return text.substr(0, text.find_first_of(u"\r\n"));
}

void SetPlace(ScriptError& error, const QStringList& frames, const Sources& sources) {
  const Place place = PlaceOf(frames);
  error.position = place.position;
  error.position.column = sources.Column(place.source, place.position.line, place.position.column);
  error.line = sources.Line(place.source, place.position.line);
}

}  // namespace

int Sources::Add(std::u16string_view source, std::vector<Insertion> insertions) {
  sources_.push_back({std::u16string(source), std::move(insertions)});
  return static_cast<int>(sources_.size());
}

QString Sources::FileName(int number) {
  return QString("script%1.js").arg(number);
}

const Sources::Source* Sources::Find(int number) const {
  const bool exists = number >= 1 && static_cast<std::size_t>(number) <= sources_.size();
  return exists ? &sources_[static_cast<std::size_t>(number) - 1] : nullptr;
}

std::u16string Sources::ForEngine(int number) const {
  const Source* source = Find(number);
  return source == nullptr ? u"" : WithInsertions(source->text, source->insertions);
}

std::u16string Sources::Line(int number, int line) const {
  const Source* source = Find(number);
  return source == nullptr ? u"" : std::u16string(LineOf(source->text, line));
}

int Sources::Column(int number, int line, int column) const {
  const Source* source = Find(number);
  if (source == nullptr) return column;
  const std::u16string_view text = LineOf(source->text, line);
  if (text.data() == nullptr) return column;
  return OriginalColumn(column, static_cast<std::size_t>(text.data() - source->text.data()), text.size(),
                        source->insertions);
}

std::int32_t NumberOf(const QString& name, const QString& message) {
  const Row* row = FindRow(runtimeRows, name, message);
  return row == nullptr ? 0 : row->number;
}

std::int32_t ScriptNumber(std::int32_t number) {
  const bool isOwn = number > 0 && number <= 0xFFFF;
  return isOwn ? static_cast<std::int32_t>(scriptFacility | static_cast<std::uint32_t>(number)) : number;
}

QJSValue ToScriptError(QJSEngine& engine, const ScriptError& error) {
  const QString text = ToQt(error.FullDescription());
  QJSValue result = engine.newErrorObject(QJSValue::GenericError, text);
  result.setProperty("number", ScriptNumber(error.number));
  result.setProperty("description", text);
  return result;
}

bool FailedToCompile(const QStringList& trace) {
  return !trace.isEmpty() && !trace.last().startsWith("%entry");
}

ScriptError CompileError(const QJSValue& thrown, const QStringList& trace, const Sources& sources) {
  const QString message = thrown.property("message").toString();
  const Row* row = FindRow(compileRows, {}, message);
  ScriptError error(row->number);
  error.description = row->text.empty() ? u"Syntax error: " + std::u16string(View(message)) : row->text;
  error.source = u"JScript compilation error";
  SetPlace(error, trace, sources);
  return error;
}

ScriptError StopError(StopReason reason, std::u16string_view procedure, const QStringList& lastSeen,
                      const Sources& sources) {
  ScriptError error(reason == StopReason::Memory ? vbs::outOfMemory : vbs::scriptStopped);
  error.source = u"JScript runtime error";
  error.isFinal = true;
  SetPlace(error, lastSeen, sources);
  if (reason != StopReason::Memory) error.description = u"The script was stopped";
  error.description += procedure.empty() ? u" in its top-level code" : u" in function ";
  error.description += procedure;
  if (error.position.line > 0)
    error.description += View(QString(", last seen at line %1").arg(error.position.line));
  // The call of the host may stand in a helper that has long returned.
  const int begun = PlaceOf({lastSeen.rbegin(), lastSeen.rend()}).position.line;
  if (begun != error.position.line) error.description += View(QString(", called from line %1").arg(begun));
  if (reason == StopReason::Silence) error.description += u": it did not respond, and cannot go on";
  return error;
}

ScriptError RuntimeError(const QJSValue& thrown, const QStringList& trace, const Sources& sources) {
  ScriptError error(notCaught);
  error.source = u"JScript runtime error";
  error.description = u"Exception thrown and not caught";
  if (thrown.isError()) {
    const QString message = thrown.property("description").toString();
    const auto number = static_cast<std::uint32_t>(thrown.property("number").toInt());
    const bool isOwn = (number & 0xFFFF0000) == scriptFacility;
    if (number != 0) error.number = static_cast<std::int32_t>(isOwn ? number & 0xFFFF : number);
    const Row* row = FindRow(runtimeRows, thrown.property("name").toString(), message);
    const bool replaced = row != nullptr && !row->text.empty();
    error.culprit = CalledProperty(message);
    error.description = replaced ? std::u16string(row->text) : UndefinedName(message);
  } else {
    error.culprit = View(thrown.toString());
  }
  SetPlace(error, trace + thrown.property("stack").toString().split('\n'), sources);
  return error;
}

}  // namespace quarlin::jscript
