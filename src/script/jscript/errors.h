// SPDX-License-Identifier: GPL-3.0-or-later
// Errors of the script language by number, in both directions.
//
// In a script the number is 0x800A0000 plus the language's own; `description` says the same as `message`.
#pragma once

#include <QJSValue>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>
#include <vector>

#include "script/jscript/call_assignments.h"
#include "script/values/error.h"

class QJSEngine;

namespace quarlin::jscript {

// The texts that were added, by the number in the file name under which the engine knows them.
class Sources {
 public:
  // As its author wrote it, and what was put in for the engine. Returns the number, from 1 on.
  int Add(std::u16string_view source, std::vector<Insertion> insertions = {});
  static QString FileName(int number);
  std::u16string Line(int number, int line) const;  // line from 1; empty where there is none
  std::u16string ForEngine(int number) const;

  // What the engine's column, from 0, is to the author.
  int Column(int number, int line, int column) const;

 private:
  struct Source {
    std::u16string text;
    std::vector<Insertion> insertions;
  };

  const Source* Find(int number) const;

  std::vector<Source> sources_;
};

// What the language's engine calls an error, and the number under which scripts know it.
std::int32_t NumberOf(const QString& name, const QString& message);

// As a script sees it in `number`.
std::int32_t ScriptNumber(std::int32_t number);

// A host's error as the script catches it.
QJSValue ToScriptError(QJSEngine& engine, const vbs::ScriptError& error);

// Whether evaluating ended in a compile error: the text's own code was not on the stack.
bool FailedToCompile(const QStringList& trace);

vbs::ScriptError CompileError(const QJSValue& thrown, const QStringList& trace, const Sources& sources);

// A run that was stopped from outside, within the named procedure or, where that is empty, within the
// top-level code. `lastSeen` is the trace of a call of the host, which may be empty. A final error.
enum class StopReason { Silence, Memory, Order };
vbs::ScriptError StopError(StopReason reason, std::u16string_view procedure, const QStringList& lastSeen,
                           const Sources& sources);

// Whatever was thrown and not caught. The trace may be empty; an error object has one of its own.
vbs::ScriptError RuntimeError(const QJSValue& thrown, const QStringList& trace, const Sources& sources);

}  // namespace quarlin::jscript
