// SPDX-License-Identifier: GPL-3.0-or-later
// All scripts of a folder: what of them does not fit this program, with counts.
#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "script/survey/findings.h"

namespace quarlin::survey {

struct Inventory {
  std::string folder;
  std::vector<ScriptReport> scripts;  // in the order of their names
  std::vector<std::string> unread;    // folders that could not be looked into, each with the reason

  std::size_t Count(Topic topic) const;
  bool AnythingMissing() const;
};

// Told before each script.
using Progress = std::function<void(std::size_t done, std::size_t all, const std::string& file)>;

// The files below the folder that end in .vbs or .js, in any case. Links to folders are not followed.
Inventory TakeInventory(const std::filesystem::path& folder, const Surroundings& surroundings,
                        const Progress& progress);

// For people, and for programs: one object, see the page about scripts.
std::string TableOf(const Inventory& inventory);
std::string JsonOf(const Inventory& inventory);
std::string JsonOf(const ScriptReport& report);

}  // namespace quarlin::survey
