// SPDX-License-Identifier: GPL-3.0-or-later
// The quick sends as Quick.txt holds them: one a line, its fields separated by tabs.
//
//   name <TAB> command <TAB> wait (1 or 0) <TAB> time-out, ms <TAB> key <TAB> repeated every, ms
//
// Fields that are missing at the end have their defaults. What cannot stand in a field, such as a tab of a
// command, is written as its code in braces, which the macros understand.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "base/program_folder.h"

namespace quarlin {

struct QuickSend {
  std::string name;
  std::string command;  // with macros
  bool waits = false;   // for an answer
  int timeOut = 1000;   // ms; 0 waits for ever
  std::string key{};    // "Ctrl+F2"; empty for that of its place
  int every = 0;        // ms between two, where it is repeated; 0 where it cannot be

  bool operator==(const QuickSend&) const = default;
};

class QuickList {
 public:
  static constexpr std::string_view fileName = "Quick.txt";
  static constexpr std::size_t mostRows = 500;
  static constexpr std::size_t largestFile = std::size_t{1} << 20;

  explicit QuickList(ProgramFolder folder) : folder_(std::move(folder)) {}

  Hook<void()> OnChanged;

  const std::vector<QuickSend>& Rows() const { return rows_; }

  // Takes the file as it is now. Returns what is wrong with it, or nothing; a file that is not understood
  // whole is left alone from then on.
  std::string TakeUp();

  // The first line of the file, from 1, with a time that is no number and counts as if it were not there; 0
  // for none.
  std::size_t FaultyLine() const { return faultyLine_; }

  // Each edit begins with TakeUp, so what another program has written stays, and ends with the file written,
  // in which the lines of other rows stand as they stood. Rows are told from each other by what they hold;
  // one that has gone meanwhile is not edited, and a new value of it is added. Returns what went wrong, or
  // nothing.
  std::string Add(QuickSend row);
  std::string Set(std::size_t index, QuickSend row);
  std::string Remove(std::size_t index);
  std::string Move(std::size_t from, std::size_t to);  // in front of the one that stands at `to`

 private:
  std::string Edit(const std::function<void(std::vector<QuickSend>& rows)>& change);
  std::optional<std::size_t> Place(const std::vector<QuickSend>& rows, const QuickSend& row,
                                   std::size_t index) const;
  std::string ContentOf(const std::vector<QuickSend>& rows) const;
  std::string Write(std::string content);

  ProgramFolder folder_;
  std::vector<QuickSend> rows_;
  std::string known_;  // what the file held when it was last read or written
  std::size_t faultyLine_ = 0;
};

std::optional<QuickSend> QuickSendFromLine(std::string_view line);
std::string LineOf(const QuickSend& row);

}  // namespace quarlin
