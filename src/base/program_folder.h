// SPDX-License-Identifier: GPL-3.0-or-later
// The folder in which every file of the program lies: config.cfg, Command.txt, the logs, the report.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace quarlin {

class ProgramFolder {
 public:
  explicit ProgramFolder(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& Path() const { return path_; }

  // Why nothing can be read from the folder, in the platform's words; nothing when it can. A folder that is
  // missing is made, or the reason is why it cannot be.
  std::error_code Trouble() const;

  // The file of that name, looked up exactly first and then without regard to case, so that a folder
  // copied from another system works. A file that does not exist keeps the name as given.
  std::filesystem::path File(std::string_view name) const;

 private:
  std::filesystem::path path_;
};

// Reads one environment variable; empty when it is not set.
using Environment = std::function<std::string(const char* name)>;

// What came with the program and is nobody's to write, such as demo/: share/quarlin beside the bin/ of an
// installed executable, else the executable's own folder. Need not exist.
std::filesystem::path FindSharedFolder(const std::filesystem::path& executable);

// The folder named by QUARLIN_HOME; else the executable's own when it is writable, no system folder and no
// installation, wherever that was put; else quarlin/ below the user's data folder. Made when it is missing.
ProgramFolder FindProgramFolder(const std::filesystem::path& executable, const Environment& environment);

}  // namespace quarlin
