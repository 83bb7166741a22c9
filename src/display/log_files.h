// SPDX-License-Identifier: GPL-3.0-or-later
// Which file a log is written to: where a new one is begun, what it is called, and which old ones are
// deleted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/hook.h"
#include "base/program_folder.h"
#include "display/log_name.h"

namespace quarlin {

struct LogRules {
  std::string name;         // see LogName
  bool newAtStart = false;  // else the last file is appended to
  bool newEachDay = false;
  std::uint64_t largest = 0;                     // bytes of a file; 0 for any
  std::size_t keep = 0;                          // files of the name; 0 for all
  std::span<const std::string_view> taken = {};  // names in the program folder that are other files'
};

class LogFiles {
 public:
  LogFiles(ProgramFolder folder, LogRules rules);

  const LogRules& Rules() const { return rules_; }

  // Another name counts from the next text on, the rest from the next file on.
  void SetRules(LogRules rules);

  // The next text is the first one of a start.
  void Restart();

  // Whether a text of `bytes` that comes now, behind `waiting` bytes that go to the present file, belongs to
  // the next one.
  bool Leaves(std::size_t waiting, std::size_t bytes, LocalTime now) const;
  void Leave();

  // Why there can be no file, as a sentence; empty when there can.
  std::string Fault() const;

  struct Place {
    std::filesystem::path file;
    std::string fault;  // why there is none
  };

  // The present file, chosen now where there is none yet. Old files beyond those to be kept are deleted, and
  // nothing but files of this name.
  Place Present(LocalTime now);

  // So many bytes have gone to the present file.
  void Grew(std::size_t bytes);

  // The name of the present file, or of the one that would be begun at `now`.
  std::string Name(LocalTime now) const;

  // Told the present file's name.
  Hook<void(const std::string& name)> OnChosen;

 private:
  unsigned NumberFor(const std::filesystem::path& folder, LocalTime now) const;
  bool IsFinished(const std::filesystem::path& file, LocalTime now) const;
  void DeleteOld(const std::filesystem::path& folder) const;
  std::filesystem::path FolderPath() const;

  ProgramFolder folder_;
  LogRules rules_;
  LogName name_;
  std::optional<std::filesystem::path> present_;
  bool splits_ = false;  // the next file follows on one that is finished
  std::uint64_t size_ = 0;
  std::chrono::local_days day_;
};

}  // namespace quarlin
