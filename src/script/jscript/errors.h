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

#include "script/values/error.h"

class QJSEngine;

namespace quarlin::jscript {

// The texts that were added, by the number in the file name under which the engine knows them.
class Sources {
 public:
  int Add(std::u16string_view source);  // returns the number, from 1 on
  static QString FileName(int number);
  std::u16string Line(int number, int line) const;  // line from 1; empty where there is none

 private:
  std::vector<std::u16string> texts_;
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

// Whatever was thrown and not caught. The trace may be empty; an error object has one of its own.
vbs::ScriptError RuntimeError(const QJSValue& thrown, const QStringList& trace, const Sources& sources);

}  // namespace quarlin::jscript
