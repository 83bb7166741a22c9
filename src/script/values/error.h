// SPDX-License-Identifier: GPL-3.0-or-later
// What goes wrong in a script: the language's own numbers with their texts.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace quarlin::vbs {

// Where in the script's text: lines from 1, columns from 0. Line 0 stands for "not known".
struct Position {
  int line = 0;
  int column = 0;
};

// Thrown by the compiler and by every operation that a script may get wrong. Under On Error Resume Next
// the machine turns it into Err; otherwise it reaches whoever called the engine.
struct ScriptError : std::exception {
  explicit ScriptError(std::int32_t errorNumber, std::u16string_view errorCulprit = {});
  const char* what() const noexcept override { return "an error in a script"; }

  std::int32_t number;
  std::u16string description;  // bare: "Type mismatch"
  std::u16string culprit;      // the name that the report quotes after it, or empty
  std::u16string source;       // "VBScript runtime error", or what Err.Raise was given
  std::u16string helpFile;
  std::int32_t helpContext = 0;
  Position position;
  std::u16string line;                           // the text of that line, where it was at hand
  std::shared_ptr<const std::u16string> script;  // otherwise what to look it up in, if that is known
  bool isFinal = false;                          // the run was stopped: no On Error Resume Next holds it up

  // "Type mismatch: 'NoSuch'": the description as a host shows it.
  std::u16string FullDescription() const;

  // The text of the line where it happened; empty when it is not known. Looked up here and not earlier: most
  // errors are caught by the script, and nobody ever sees their line.
  std::u16string LineText() const;
};

// The numbers that the interpreter itself raises. Those from 1001 on are found when a text is compiled.
enum ErrorNumber : std::int32_t {
  invalidCall = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  arrayFixedOrLocked = 10,
  divisionByZero = 11,
  typeMismatch = 13,
  outOfStringSpace = 14,
  outOfStackSpace = 28,
  procedureUndefined = 35,
  badFileName = 52,
  fileNotFound = 53,
  badFileMode = 54,
  fileExists = 58,
  inputPastEnd = 62,
  permissionDenied = 70,
  pathNotFound = 76,
  objectNotSet = 91,
  forLoopNotInitialized = 92,
  invalidUseOfNull = 94,
  objectRequired = 424,
  cannotCreateObject = 429,
  noSuchMember = 438,
  actionNotSupported = 445,
  noSuchLocale = 447,
  argumentNotOptional = 449,
  wrongArgumentCount = 450,
  notACollection = 451,
  keyExists = 457,
  variableUndefined = 500,
  illegalAssignment = 501,
  objectNotSafe = 502,
  invalidReference = 505,
  classNotDefined = 506,
  scriptStopped = 507,
  regExpSyntax = 5017,
  elementNotFound = 32811,
};

// The end of a run that no On Error Resume Next holds up.
[[noreturn]] void ThrowStopped(std::u16string_view description = u"The script was stopped");

// The text of a number; "Unknown runtime error" for one that is not in the table.
std::u16string_view ErrorText(std::int32_t number);

}  // namespace quarlin::vbs
