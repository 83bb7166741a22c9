// SPDX-License-Identifier: GPL-3.0-or-later
// What of a script does not fit this program.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "script/survey/mentions.h"
#include "script/values/dispatch.h"

namespace quarlin::survey {

enum class Topic {
  Compile,    // it does not
  Program,    // an object that cannot be made here
  Member,     // of an object of this program, which has no such member
  Object,     // a name that is used as an object, and nothing ever makes it one
  Procedure,  // one that is called, and there is none
  Drive,      // a drive's letter in a text
  Hook,       // a procedure that is nearly named like a hook, and that nobody calls
  Unread,     // a name that is assigned once and never read
  Locale      // a conversion that goes by the locale
};
inline constexpr int topics = 9;

// The word for machines.
std::string_view WordOf(Topic topic);

// Whether scripts cannot run as they are because of it; the others are worth a look.
bool IsMissing(Topic topic);

struct Finding {
  Topic topic;
  std::string name;  // what it is about, as it is written: "FrmCommand.TextOI"
  std::string text;  // a sentence about it
  vbs::Position at;
};

struct ProgramUse {
  std::string name;
  bool isHere = false;
  int line = 0;
};

struct ScriptReport {
  std::string file;
  std::string language;
  std::vector<Finding> findings;  // in the order of lines
  std::vector<ProgramUse> programs;

  bool Compiles() const;
};

// What scripts find in the program.
struct Surroundings {
  struct Object {
    std::u16string name;
    vbs::ObjectRef object;
  };
  std::vector<Object> objects;  // of two that have the same member, the first is meant by the bare name
  std::function<vbs::ObjectRef(std::u16string_view programId)> make;  // null where it cannot be made
  // Compiles it without running it; the error where it does not compile or cannot be read.
  std::function<std::optional<vbs::ScriptError>(const std::filesystem::path& file)> compile;
};

// Reads and compiles the file; `shownName` stands in the report. Properties of controls may be read, nothing
// is written or called.
ScriptReport ReportOn(const std::filesystem::path& file, const std::string& shownName,
                      const Surroundings& surroundings);

}  // namespace quarlin::survey
