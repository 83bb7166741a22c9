// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/log_files.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "base/text.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

// As far as the folder can be read.
std::vector<fs::directory_entry> EntriesOf(const fs::path& folder) {
  std::vector<fs::directory_entry> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    entries.push_back(*entry);
  }
  return entries;
}

}  // namespace

LogFiles::LogFiles(ProgramFolder folder, LogRules rules)
    : folder_(std::move(folder)), rules_(std::move(rules)), name_(rules_.name) {}

void LogFiles::SetRules(LogRules rules) {
  const bool renamed = rules.name != rules_.name;
  rules_ = std::move(rules);
  if (!renamed) return;
  name_ = LogName(rules_.name);
  Restart();
}

void LogFiles::Restart() {
  present_.reset();
  splits_ = false;
}

bool LogFiles::Leaves(std::size_t waiting, std::size_t bytes, LocalTime now) const {
  if (!present_) return false;
  if (rules_.newEachDay && floor<std::chrono::days>(now) != day_) return true;
  const std::uint64_t before = size_ + waiting;
  return rules_.largest != 0 && before > 0 && before + bytes > rules_.largest;
}

void LogFiles::Leave() {
  present_.reset();
  splits_ = true;
}

std::string LogFiles::Fault() const {
  if (!name_.Fault().empty()) {
    return fmt::format("the log cannot be called \"{}\": {}", rules_.name, name_.Fault());
  }
  std::error_code ignored;
  const bool inProgramFolder = fs::equivalent(FolderPath(), folder_.Path(), ignored);
  const std::string name = fs::path(rules_.name).filename().string();
  const auto isThat = [&](std::string_view taken) { return EqualsIgnoringCase(taken, name); };
  if (inProgramFolder && std::any_of(rules_.taken.begin(), rules_.taken.end(), isThat)) {
    return fmt::format("the log cannot be called {}: that is another file of the program", name);
  }
  if (fs::is_directory(FolderPath(), ignored)) return {};
  return fmt::format("the log cannot be written: there is no folder {}", FolderPath().string());
}

fs::path LogFiles::FolderPath() const {
  return name_.Folder().empty() ? folder_.Path() : folder_.Path() / name_.Folder();
}

LogFiles::Place LogFiles::Present(LocalTime now) {
  if (present_) return {*present_, {}};
  if (std::string fault = Fault(); !fault.empty()) return {{}, std::move(fault)};
  const fs::path folder = FolderPath();
  present_ = ProgramFolder(folder).File(name_.At(now, NumberFor(folder, now)));
  std::error_code error;
  const std::uintmax_t size = fs::file_size(*present_, error);
  size_ = error ? 0 : size;
  day_ = floor<std::chrono::days>(now);
  DeleteOld(folder);
  OnChosen(present_->filename().string());
  return {*present_, {}};
}

// A log that is never split goes on in the file of its plain name, whatever lies beside it.
unsigned LogFiles::NumberFor(const fs::path& folder, LocalTime now) const {
  const bool numbered = rules_.newAtStart || rules_.newEachDay || rules_.largest != 0 || name_.HasNumber();
  if (!numbered) return 1;
  const LogFileNames names = name_.NamesAt(now);
  unsigned highest = 0;
  fs::path last;
  for (const fs::directory_entry& entry : EntriesOf(folder)) {
    const unsigned number = names.NumberOf(entry.path().filename().string()).value_or(0);
    if (number <= highest) continue;
    highest = number;
    last = entry.path();
  }
  if (highest == 0) return 1;
  return splits_ || rules_.newAtStart || IsFinished(last, now) ? highest + 1 : highest;
}

bool LogFiles::IsFinished(const fs::path& file, LocalTime now) const {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return false;
  if (rules_.largest != 0 && static_cast<std::uint64_t>(status.st_size) >= rules_.largest) return true;
  const LocalTime written(std::chrono::seconds(status.st_mtim.tv_sec) + UtcOffsetAt(now));
  return rules_.newEachDay && floor<std::chrono::days>(written) != floor<std::chrono::days>(now);
}

void LogFiles::DeleteOld(const fs::path& folder) const {
  if (rules_.keep == 0) return;
  using Age = std::tuple<fs::file_time_type, unsigned, fs::path>;  // of two of one time the lower number goes
  std::vector<Age> others;
  const LogFileNames names = name_.NamesAt(std::nullopt);
  std::error_code ignored;
  for (const fs::directory_entry& entry : EntriesOf(folder)) {
    const auto number = names.NumberOf(entry.path().filename().string());
    const bool isPlainFile = entry.symlink_status(ignored).type() == fs::file_type::regular;
    if (!number || !isPlainFile || entry.path() == *present_) continue;
    others.emplace_back(entry.last_write_time(ignored), *number, entry.path());
  }
  std::sort(others.begin(), others.end());
  for (std::size_t i = 0; i + rules_.keep <= others.size(); ++i)
    fs::remove(std::get<fs::path>(others[i]), ignored);
}

void LogFiles::Grew(std::size_t bytes) {
  size_ += bytes;
  if (rules_.largest == 0 || !present_) return;
  std::error_code error;
  const std::uintmax_t size = fs::file_size(*present_, error);  // somebody may have moved it away
  if (!error) size_ = size;
}

std::string LogFiles::Name(LocalTime now) const {
  if (present_) return present_->filename().string();
  return name_.Fault().empty() ? name_.At(now, 1) : rules_.name;
}

}  // namespace quarlin
