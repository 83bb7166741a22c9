// SPDX-License-Identifier: GPL-3.0-or-later
// What the text of a script mentions, found without running it: the same for both languages.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/error.h"

namespace quarlin::survey {

struct Named {
  std::u16string name;
  vbs::Position at;
};

// "FormMain.TextIO(3).Text": a name that the script does not declare, and what is reached from there.
struct Chain {
  struct Step {
    std::u16string name;
    bool indexed = false;  // arguments or an index follow
  };
  Step root;
  std::vector<Step> members;
  vbs::Position at;
  std::u16string program;  // the root is a variable that holds an object made by this name
};

struct Procedure {
  std::u16string name;
  vbs::Position at;
  bool takesArguments = false;
};

struct Mentions {
  std::vector<Chain> chains;
  std::vector<Named> programs;        // handed to CreateObject and the like, as literal texts
  std::vector<Named> texts;           // literal texts
  std::vector<Named> conversions;     // calls that read or write numbers and dates as the locale has them
  bool choosesLocale = false;         // and so knows what they do
  std::vector<Named> unread;          // variables that are assigned once, a plain value, and never read
  std::vector<Procedure> procedures;  // of the top level
  std::set<std::u16string> used;      // folded names that stand anywhere but where they are declared
  bool runsTexts = false;             // Execute, Eval: there may be more than one sees
};

// Whether the program has a name that scripts may use without declaring it.
using IsKnown = std::function<bool(std::u16string_view name)>;

// Throws ScriptError when the text does not compile.
Mentions MentionsOfVbscript(std::u16string_view source, const IsKnown& isHosts);

// Goes by the smallest parts of the text, so also one that does not compile is looked through. `unread` stays
// empty.
Mentions MentionsOfJscript(std::u16string_view source, const IsKnown& isHosts);

// In lower case, as names are compared.
std::u16string FoldedName(std::u16string_view name);

}  // namespace quarlin::survey
