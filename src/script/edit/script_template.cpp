// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/script_template.h"

namespace quarlin {
namespace {

constexpr std::string_view vbscriptTemplate = R"(' What this script does, and how it is used.
'
' Procedures that are not needed can go: the program calls those that are there.
Option Explicit

' Once, when the script is switched on.
Sub InitTask()
  TimerTask.Interval = 0  ' milliseconds between two calls of Task; 0: none
End Sub

' Again and again, every TimerTask.Interval milliseconds.
Sub Task()
End Sub

' For each character that has arrived.
Sub ReceiveChar()
  CharReceived.OutputString = CharReceived.InputString
End Sub

' For each complete string, before it is checked and shown to the parser.
Sub ReceiveString()
  StringReceived.OutputString = StringReceived.InputString
End Sub

' For each string that is about to be sent, with its terminator.
Sub SendString()
  StringToSend.OutputString = StringToSend.InputString
End Sub

' Once, at the end of the program, while the link is still open.
Sub EndTask()
End Sub
)";

constexpr std::string_view jscriptTemplate = R"(// What this script does, and how it is used.
//
// Functions that are not needed can go: the program calls those that are there.

// Once, when the script is switched on.
function InitTask() {
  TimerTask.Interval = 0;  // milliseconds between two calls of Task; 0: none
}

// Again and again, every TimerTask.Interval milliseconds.
function Task() {
}

// For each character that has arrived.
function ReceiveChar() {
  CharReceived.OutputString = CharReceived.InputString;
}

// For each complete string, before it is checked and shown to the parser.
function ReceiveString() {
  StringReceived.OutputString = StringReceived.InputString;
}

// For each string that is about to be sent, with its terminator.
function SendString() {
  StringToSend.OutputString = StringToSend.InputString;
}

// Once, at the end of the program, while the link is still open.
function EndTask() {
}
)";

}  // namespace

EditedText ScriptTemplate(std::string_view language) {
  EditedText text;
  text.utf8 = language == "VBScript" ? vbscriptTemplate : jscriptTemplate;
  return text;
}

}  // namespace quarlin
