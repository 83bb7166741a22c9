// SPDX-License-Identifier: GPL-3.0-or-later
// Why a port that is there cannot be opened.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace quarlin {

// In words, from the error of the opening: whose group may use a device that needs a permission ("the group
// \"dialout\" may use it"), which program holds one that is busy ("logger (4711) has it"). Empty where
// nothing is known; of the programs of other users the system tells only the administrator.
std::string WhoseIsIt(const std::filesystem::path& device, std::int32_t error,
                      const std::filesystem::path& processes = "/proc");

}  // namespace quarlin
