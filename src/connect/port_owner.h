// SPDX-License-Identifier: GPL-3.0-or-later
// Why a port that is there cannot be opened, and what to do about it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace quarlin {

// In words that follow the port's name, from the error of the opening: who may use a device that needs a
// permission, with the command that gives it ("belongs to group dialout: sudo usermod …"), which program
// holds one that is busy ("is held by logger (4711)"). Empty where nothing is known; of the programs of other
// users the system tells only the administrator.
std::string WhoseIsIt(const std::filesystem::path& device, std::int32_t error,
                      const std::filesystem::path& processes = "/proc");

// The same for a device that this user may not open, without trying; empty for one that she may, and for
// none.
std::string MissingPermission(const std::filesystem::path& device);

// What stands between a user and a device.
struct Permission {
  std::string group;         // of the device; empty where it has no name
  bool groupMayUse = false;  // read and write
  std::string user;          // empty where she has no name
  bool member = false;       // of the group, as the system's list has it
  bool memberSince = false;  // and was so when she logged in
};

// "belongs to group dialout: sudo usermod -aG dialout anna, then log in again"
std::string Advice(const Permission& permission);

}  // namespace quarlin
