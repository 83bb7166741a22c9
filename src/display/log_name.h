// SPDX-License-Identifier: GPL-3.0-or-later
// The name of a log as the user writes it, "LOG-%Y-%m-%d.TXT": a file of the program folder, or of a folder
// that is named in front of it.
//
//   %Y %y   year, four or two digits     %H %M %S   hour, minute, second
//   %m %d   month, day                   %n         number of the file, 001 and so on
//   %j      day of the year              %%         a percent sign
//
// Without %n a second file of the same name is "LOG-part002.TXT".
#pragma once

#include <filesystem>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"

namespace quarlin {

// Knows the files of a log by their names. Costs more to make than to ask, and a folder may hold thousands.
class LogFileNames {
 public:
  explicit LogFileNames(const std::string& expression) : expression_(expression) {}

  // The number of the file; nothing for one that has another kind of name.
  std::optional<unsigned> NumberOf(const std::string& fileName) const;

 private:
  std::regex expression_;
};

class LogName {
 public:
  explicit LogName(std::string_view pattern);

  // Why no file can have this name; empty when one can. Then the calls below mean nothing.
  const std::string& Fault() const { return fault_; }

  // As it was written; empty for the program folder.
  const std::filesystem::path& Folder() const { return folder_; }
  bool HasNumber() const { return hasNumber_; }

  // The name, without its folder, of the file with that number (from 1) that is begun at `time`.
  std::string At(LocalTime time, unsigned number) const;

  // The names of the files that were begun at `time`, or at any time where none is given.
  LogFileNames NamesAt(std::optional<LocalTime> time) const;

 private:
  struct Piece {
    char macro = 0;       // its letter; 0 for plain text
    std::string literal;  // where it is none
  };

  void Take(std::string_view pattern);
  void AddPart();
  std::string TextOf(const Piece& piece, LocalTime time, unsigned number) const;

  std::string fault_;
  std::filesystem::path folder_;
  std::vector<Piece> pieces_;
  bool hasNumber_ = false;
};

}  // namespace quarlin
