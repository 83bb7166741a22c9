// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_owner.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/files.h"
#include "base/text.h"
#include "connect/port_list.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;

bool IsMember(const passwd& user, const group& of) {
  if (user.pw_gid == of.gr_gid) return true;
  for (char** name = of.gr_mem; *name != nullptr; ++name) {
    if (std::string_view(*name) == user.pw_name) return true;
  }
  return false;
}

bool SessionHas(gid_t wanted) {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
  const int count = getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(count, 0)));
  groups.push_back(getegid());
  return std::find(groups.begin(), groups.end(), wanted) != groups.end();
}

std::optional<Permission> PermissionFor(const fs::path& device) {
  struct stat status {};
  if (stat(device.c_str(), &status) != 0) return std::nullopt;
  constexpr mode_t readAndWrite = S_IRGRP | S_IWGRP;
  Permission permission;
  permission.groupMayUse = (status.st_mode & readAndWrite) == readAndWrite;
  permission.memberSince = SessionHas(status.st_gid);
  const group* const owner = getgrgid(status.st_gid);
  if (owner != nullptr) permission.group = owner->gr_name;
  const passwd* const user = getpwuid(geteuid());
  if (user != nullptr) permission.user = user->pw_name;
  permission.member = owner != nullptr && user != nullptr && IsMember(*user, *owner);
  return permission;
}

std::string PermissionFromWhom(const fs::path& device) {
  const std::optional<Permission> permission = PermissionFor(device);
  return permission ? Advice(*permission) : std::string();
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
    return fmt::format("is held by {} ({})", TrimBlanks(name.substr(0, name.find('\n'))), number);
  }
  return {};
}

}  // namespace

// Nobody is told to join the administrator's group, which may do more than use a port.
std::string Advice(const Permission& permission) {
  const std::string& group = permission.group;
  if (!permission.groupMayUse || group.empty() || group == "root") {
    return "is for root alone: it needs a udev rule with GROUP=\"dialout\", MODE=\"0660\"";
  }
  if (permission.memberSince) {
    return fmt::format("belongs to group {}, and so do you: something else forbids it, such as a container",
                       group);
  }
  if (permission.member) {
    return fmt::format("belongs to group {}, which you have joined since you logged in: log in again", group);
  }
  return fmt::format("belongs to group {0}: sudo usermod -aG {0} {1}, then log in again", group,
                     permission.user.empty() ? "YOUR-NAME" : permission.user);
}

std::string MissingPermission(const fs::path& device) {
  if (faccessat(AT_FDCWD, device.c_str(), R_OK | W_OK, AT_EACCESS) == 0 || errno != EACCES) return {};
  return PermissionFromWhom(device);
}

std::string WhoseIsIt(const fs::path& device, std::int32_t error, const fs::path& processes) {
  if (error == EACCES || error == EPERM) return PermissionFromWhom(device);
  return error == EBUSY ? HolderOf(device, processes) : std::string();
}

}  // namespace quarlin
