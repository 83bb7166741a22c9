// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_owner.h"

#include <fmt/format.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>

#include "base/files.h"
#include "base/text.h"
#include "connect/port_list.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;

std::string GroupOf(const fs::path& device) {
  struct stat status {};
  if (stat(device.c_str(), &status) != 0 || (status.st_mode & S_IWGRP) == 0) return {};
  const group* const entry = getgrgid(status.st_gid);
  return fmt::format("the group \"{}\" may use it",
                     entry != nullptr ? entry->gr_name : fmt::to_string(status.st_gid));
}

bool Holds(const fs::path& process, const fs::path& device) {
  std::error_code error;
  for (fs::directory_iterator file(process / "fd", error); !error && file != fs::directory_iterator();
       file.increment(error)) {
    if (IsSameDevice(file->path(), device)) return true;
  }
  return false;
}

std::string HolderOf(const fs::path& device, const fs::path& processes) {
  std::error_code error;
  const std::string ourselves = fmt::to_string(getpid());
  for (fs::directory_iterator process(processes, error); !error && process != fs::directory_iterator();
       process.increment(error)) {
    const std::string number = process->path().filename().string();
    const bool isProcess =
        std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isProcess || number == ourselves || !Holds(process->path(), device)) continue;
    const std::string name = ReadWholeFile(process->path() / "comm").value_or("a program");
    return fmt::format("{} ({}) has it", TrimBlanks(name.substr(0, name.find('\n'))), number);
  }
  return {};
}

}  // namespace

std::string WhoseIsIt(const fs::path& device, std::int32_t error, const fs::path& processes) {
  if (error == EACCES || error == EPERM) return GroupOf(device);
  return error == EBUSY ? HolderOf(device, processes) : std::string();
}

}  // namespace quarlin
