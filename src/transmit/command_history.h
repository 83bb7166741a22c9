// SPDX-License-Identifier: GPL-3.0-or-later
// The commands that were sent, the most recent first, none twice: kept in History.txt over a restart, and
// walked through with Up and Down in the command box.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/hook.h"
#include "base/program_folder.h"
#include "controls/alarms.h"

namespace quarlin {

class CommandHistory {
 public:
  static constexpr std::string_view fileName = "History.txt";
  static constexpr std::size_t most = 100;
  static constexpr Duration savePause = std::chrono::seconds(2);  // in which changes gather for one writing

  // `trouble` is told, once, that the file cannot be written.
  CommandHistory(EventLoop& loop, ProgramFolder folder, std::function<void(std::string_view)> trouble);

  Hook<void()> OnChanged;

  // Takes the file; from now on changes are written to it, unless it is there and cannot be read. Returns
  // what is wrong with it, or nothing.
  std::string Load();

  // The command was sent: it is the first one now. An empty one is none, and so is one that would not come
  // back out of the file: of several lines, or longer than a line of it may be.
  void Add(std::string_view command);

  const std::vector<std::string>& Entries() const { return entries_; }

  // Writes what has changed. What another program instance has added meanwhile stays, behind ours.
  void Save();

  // The next older or newer command than the one that is shown, from what was being typed, which is kept at
  // the bottom. Nothing where there is none.
  std::optional<std::string> Older(std::string_view shown);
  std::optional<std::string> Newer(std::string_view shown);

 private:
  void BeginWalk(std::string_view shown);

  ProgramFolder folder_;
  std::function<void(std::string_view)> trouble_;
  std::vector<std::string> entries_;
  bool kept_ = false;  // in the file
  bool changed_ = false;
  bool troubleTold_ = false;
  std::string typed_;         // before the walk
  std::size_t position_ = 0;  // of the walk: entries_[position_ - 1] is shown, 0 stands for what was typed
  EventLoop& loop_;
  Alarm saveAlarm_;
};

}  // namespace quarlin
