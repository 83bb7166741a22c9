// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/survey/inventory.h"

#include <algorithm>

#include "base/text.h"

namespace quarlin::survey {
namespace {

namespace fs = std::filesystem;

bool IsScript(const fs::path& file) {
  const std::string ending = ToUpper(file.extension().string());
  return ending == ".VBS" || ending == ".JS";
}

std::vector<fs::path> ScriptsBelow(const fs::path& folder, std::vector<std::string>& unread) {
  std::vector<fs::path> files;
  std::vector<fs::path> folders{folder};
  while (!folders.empty()) {
    const fs::path next = std::move(folders.back());
    folders.pop_back();
    std::error_code error;
    for (fs::directory_iterator at(next, error), end; !error && at != end; at.increment(error)) {
      std::error_code gone;
      const bool isFolder = at->is_directory(gone) && !at->is_symlink(gone);
      if (isFolder) folders.push_back(at->path());
      if (!isFolder && at->is_regular_file(gone) && IsScript(at->path())) files.push_back(at->path());
    }
    if (error) unread.push_back(next.string() + ": " + error.message());
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace

std::size_t Inventory::Count(Topic topic) const {
  std::size_t count = 0;
  for (const ScriptReport& script : scripts) {
    count += static_cast<std::size_t>(std::ranges::count(script.findings, topic, &Finding::topic));
  }
  return count;
}

bool Inventory::AnythingMissing() const {
  return !unread.empty() || std::ranges::any_of(scripts, [](const ScriptReport& script) {
    return std::ranges::any_of(script.findings,
                               [](const Finding& finding) { return IsMissing(finding.topic); });
  });
}

Inventory TakeInventory(const fs::path& folder, const Surroundings& surroundings, const Progress& progress) {
  Inventory inventory{folder.string(), {}, {}};
  const std::vector<fs::path> files = ScriptsBelow(folder, inventory.unread);
  for (const fs::path& file : files) {
    const std::string name = file.lexically_relative(folder).string();
    progress(inventory.scripts.size(), files.size(), name);
    inventory.scripts.push_back(ReportOn(file, name, surroundings));
  }
  return inventory;
}

}  // namespace quarlin::survey
