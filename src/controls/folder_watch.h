// SPDX-License-Identifier: GPL-3.0-or-later
// Tells when files of a folder have changed: written and closed, replaced by another that was renamed, come
// or gone. The system reports it; nothing is looked at while nothing happens.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/file_handle.h"
#include "controls/event_loop.h"

namespace quarlin {

class FolderWatch {
 public:
  // An editor makes several changes to save one text, and between them the file may be missing. So one call
  // tells of all that came until nothing has come for this long, but of what goes on and on after `atMost`.
  static constexpr Duration quiet = std::chrono::milliseconds(50);
  static constexpr Duration atMost = std::chrono::milliseconds(500);

  // What changes in the folder from here on is told. A folder that cannot be watched tells nothing; Trouble()
  // has the reason. Where a link in the folder leads to is not watched, nor what another computer changes.
  FolderWatch(EventLoop& loop, const std::filesystem::path& folder);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  // Has `changed` called after a change of the file of that name, in capitals or small letters, whether there
  // is one yet or not. A file that is being written has changed when its writer closes it. Called from the
  // loop, never during a yield, until this watch ends.
  void Follow(std::string_view name, std::function<void()> changed);

  std::error_code Trouble() const { return trouble_; }

 private:
  struct Follower {
    std::string name;
    std::function<void()> changed;
    bool due = false;
  };

  void TakeEvents();
  void Note(std::string_view name);
  void NoteAll();
  void Plan();
  void Tell();

  EventLoop& loop_;
  std::error_code trouble_;
  FileHandle events_;
  std::vector<Follower> followers_;
  std::optional<Instant> firstDue_;  // when the first change came that was not told yet
  Alarm settled_;
  std::unique_ptr<Watch> watch_;
};

}  // namespace quarlin
