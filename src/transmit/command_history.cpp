// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/command_history.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/files.h"
#include "base/text.h"
#include "controls/event_loop.h"
#include "transmit/line_files.h"

namespace quarlin {
namespace {

// Those of `more` that are not there yet, as far as there is room.
void Append(std::vector<std::string>& entries, const std::vector<std::string>& more) {
  for (const std::string& entry : more) {
    if (entries.size() == CommandHistory::most) return;
    if (std::find(entries.begin(), entries.end(), entry) == entries.end()) entries.push_back(entry);
  }
}

}  // namespace

CommandHistory::CommandHistory(EventLoop& loop, ProgramFolder folder,
                               std::function<void(std::string_view)> trouble)
    : folder_(std::move(folder)),
      trouble_(std::move(trouble)),
      loop_(loop),
      saveAlarm_(loop, [this] { Save(); }) {}

std::string CommandHistory::Load() {
  const LineFile file = ReadLineFile(folder_, fileName);
  Append(entries_, file.lines);
  kept_ = !file.error || file.error == std::errc::no_such_file_or_directory;
  OnChanged();
  return file.Trouble(fileName);
}

void CommandHistory::Add(std::string_view command) {
  position_ = 0;
  const bool isOneLine = command.find_first_of("\r\n") == std::string_view::npos;
  if (command.empty() || command.size() > longestLine || !isOneLine) return;
  if (!entries_.empty() && entries_.front() == command) return;
  std::erase(entries_, command);
  entries_.insert(entries_.begin(), std::string(command));
  if (entries_.size() > most) entries_.pop_back();
  changed_ = true;
  if (kept_ && !saveAlarm_.IsSet()) saveAlarm_.At(loop_.Now() + savePause);
  OnChanged();
}

void CommandHistory::Save() {
  saveAlarm_.Cancel();
  if (!kept_ || !std::exchange(changed_, false)) return;
  std::vector<std::string> all = entries_;
  Append(all, ReadLineFile(folder_, fileName).lines);
  std::string content;
  for (const std::string& entry : all) content += Utf8FromBytes(entry) + "\n";
  const std::error_code error = WriteWholeFile(folder_.File(fileName), content);
  changed_ = static_cast<bool>(error);  // the next command, or the end of the program, tries again
  if (error && !std::exchange(troubleTold_, true)) {
    trouble_(fmt::format("{} was not written: {}", fileName, error.message()));
  }
}

// A text that the walk has not put there is being typed.
void CommandHistory::BeginWalk(std::string_view shown) {
  const bool goesOn = position_ > 0 && position_ <= entries_.size() && entries_[position_ - 1] == shown;
  if (goesOn) return;
  position_ = 0;
  typed_ = shown;
}

std::optional<std::string> CommandHistory::Older(std::string_view shown) {
  BeginWalk(shown);
  for (std::size_t next = position_ + 1; next <= entries_.size(); ++next) {
    if (entries_[next - 1] == shown) continue;  // it would look as if the key did nothing
    position_ = next;
    return entries_[next - 1];
  }
  return std::nullopt;
}

std::optional<std::string> CommandHistory::Newer(std::string_view shown) {
  BeginWalk(shown);
  if (position_ == 0) return std::nullopt;
  --position_;
  return position_ == 0 ? typed_ : entries_[position_ - 1];
}

}  // namespace quarlin
