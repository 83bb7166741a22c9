// SPDX-License-Identifier: GPL-3.0-or-later
// What can be typed at a place in a script: the language, the program's objects with their members and
// controls, and the script's own names.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/collection.h"
#include "script/script_runner.h"

namespace quarlin {

struct Suggestion {
  std::string name;
  std::string help;  // one line; may be empty
};

class Vocabulary {
 public:
  // The runner's objects are those that every script sees. Both outlive it.
  Vocabulary(const ScriptRunner& runner, std::vector<const ControlCollection*> windows);

  // What the window itself says of a control; empty where it says nothing.
  using ControlHelp = std::function<std::string(const Control& control)>;
  void SetControlHelp(ControlHelp help) { controlHelp_ = std::move(help); }

  // What may stand behind `before`, the text of the line up to the cursor, in the order of the alphabet:
  // members where it ends in "name." and the beginning of a member, else all that the script sees. `script`
  // is the whole text. Behind a dot whose left side is not known: nothing in VBScript, and in JScript what
  // texts, lists, dates and patterns have.
  std::vector<Suggestion> At(std::string_view language, std::string_view before,
                             std::string_view script) const;

  // The help for the procedure whose arguments are being typed at the end of `before`; empty for none.
  std::string CallHelp(std::string_view language, std::string_view before, std::string_view script) const;

  // "FormMain.txtMax": every object with each of its members.
  std::vector<std::string> QualifiedNames() const;

 private:
  std::vector<Suggestion> MembersOf(std::string_view language, std::string_view chain) const;
  std::vector<Suggestion> MembersOfControl(const Control& control, bool indexed) const;
  void AddGlobals(std::vector<Suggestion>& found, std::string_view language) const;
  void AddVbscript(std::vector<Suggestion>& found) const;
  void AddMembers(std::vector<Suggestion>& found, const ScriptRunner::NamedObject& object,
                  bool bareOnly) const;
  const Control* FindControl(std::string_view name) const;
  std::string HelpOf(std::string_view owner, std::string_view name) const;  // of the program's names

  const ScriptRunner& runner_;
  std::vector<const ControlCollection*> windows_;
  ControlHelp controlHelp_;
};

// The names that the script itself brings in, each once; the help of a procedure is its first line.
std::vector<Suggestion> OwnNames(std::string_view language, std::string_view script);

}  // namespace quarlin
