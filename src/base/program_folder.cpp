// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/program_folder.h"

#include <unistd.h>

#include <array>
#include <system_error>

#include "base/text.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

bool IsSystemFolder(const fs::path& folder) {
  constexpr std::array<std::string_view, 6> systemFolders{"usr", "opt", "bin", "sbin", "lib", "snap"};
  const std::string top = folder.begin() == folder.end() ? "" : (++folder.begin())->string();
  for (const std::string_view name : systemFolders) {
    if (top == name) return true;
  }
  return false;
}

fs::path UserFolder(const Environment& environment) {
  const std::string data = environment("XDG_DATA_HOME");
  if (!data.empty()) return fs::path(data) / "quarlin";
  const std::string home = environment("HOME");
  return fs::path(home.empty() ? "." : home) / ".local" / "share" / "quarlin";
}

fs::path InstalledFolder(const fs::path& executable) {
  return executable.parent_path().parent_path() / "share" / "quarlin";
}

bool IsInstalled(const fs::path& executable) {
  std::error_code ignored;
  return fs::is_directory(InstalledFolder(executable), ignored);
}

fs::path ChooseFolder(const fs::path& executable, const Environment& environment) {
  if (const std::string named = environment("QUARLIN_HOME"); !named.empty()) return named;
  fs::path beside = executable.parent_path();
  const bool usable = beside.is_absolute() && beside != beside.root_path() && !IsSystemFolder(beside) &&
                      !IsInstalled(executable);
  if (usable && access(beside.c_str(), W_OK) == 0) return beside;
  return UserFolder(environment);
}

}  // namespace

fs::path ProgramFolder::File(std::string_view name) const {
  fs::path exact = path_ / name;
  std::error_code error;
  if (fs::exists(exact, error)) return exact;
  for (const fs::directory_entry& entry : fs::directory_iterator(path_, error)) {
    if (EqualsIgnoringCase(entry.path().filename().string(), name)) return entry.path();
  }
  return exact;
}

std::error_code ProgramFolder::Trouble() const {
  std::error_code error;
  fs::create_directories(path_, error);  // a folder that is missing is so because it could not be made
  if (error) return error;
  const fs::directory_iterator entries(path_, error);
  return error;
}

fs::path FindSharedFolder(const fs::path& executable) {
  return IsInstalled(executable) ? InstalledFolder(executable) : executable.parent_path();
}

ProgramFolder FindProgramFolder(const fs::path& executable, const Environment& environment) {
  std::error_code ignored;  // an unusable folder shows at the first file that is written
  const fs::path folder = fs::absolute(ChooseFolder(executable, environment), ignored);
  fs::create_directories(folder, ignored);
  return ProgramFolder(folder);
}

}  // namespace quarlin
