// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/editor_lookup.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <system_error>

#include "desktop/desktop_file.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view mimeType = "text/plain";
constexpr std::string_view entryGroup = "Desktop Entry";

std::vector<std::string> SplitAtColons(std::string_view list) {
  std::vector<std::string> parts;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(':'), list.size());
    if (end > 0) parts.emplace_back(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return parts;
}

// The user's own folder first, then the system's in their order.
std::vector<fs::path> Folders(const Environment& environment, const char* own, const char* belowHome,
                              const char* others, const char* usualOthers) {
  std::vector<fs::path> folders;
  if (const std::string named = environment(own); !named.empty()) {
    folders.emplace_back(named);
  } else if (const std::string home = environment("HOME"); !home.empty()) {
    folders.push_back(fs::path(home) / belowHome);
  }
  std::string list = environment(others);
  if (list.empty()) list = usualOthers;
  for (const std::string& folder : SplitAtColons(list)) folders.emplace_back(folder);
  return folders;
}

bool IsRunnable(const fs::path& program) {
  std::error_code error;
  return fs::is_regular_file(program, error) && access(program.c_str(), X_OK) == 0;
}

class EditorSearch {
 public:
  explicit EditorSearch(const Environment& environment)
      : environment_(environment),
        settings_(Folders(environment, "XDG_CONFIG_HOME", ".config", "XDG_CONFIG_DIRS", "/etc/xdg")) {
    const auto data =
        Folders(environment, "XDG_DATA_HOME", ".local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (const fs::path& folder : data) applications_.push_back(folder / "applications");
    settings_.insert(settings_.end(), applications_.begin(), applications_.end());
  }

  // What is set as the default counts everywhere before what is merely able to open text.
  std::optional<std::vector<std::string>> Find() {
    const std::vector<DesktopFile> lists = AssociationLists();
    for (const DesktopFile& list : lists) {
      if (auto command = FirstUsable(list.List("Default Applications", mimeType))) return command;
    }
    for (const DesktopFile& list : lists) {
      if (auto command = FirstUsable(list.List("Added Associations", mimeType))) return command;
      for (std::string& name : list.List("Removed Associations", mimeType)) {
        removed_.push_back(std::move(name));
      }
    }
    for (const fs::path& folder : applications_) {
      const DesktopFile cache(folder / "mimeinfo.cache");
      if (auto command = FirstUsable(EditorsFirst(cache.List("MIME Cache", mimeType)))) return command;
    }
    return std::nullopt;
  }

 private:
  // In each folder the running desktop's own list stands before the common one.
  std::vector<DesktopFile> AssociationLists() const {
    std::vector<std::string> names;
    for (std::string desktop : SplitAtColons(environment_("XDG_CURRENT_DESKTOP"))) {
      std::transform(desktop.begin(), desktop.end(), desktop.begin(),
                     [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
      names.push_back(desktop + "-mimeapps.list");
    }
    names.emplace_back("mimeapps.list");
    std::vector<DesktopFile> lists;
    for (const fs::path& folder : settings_) {
      for (const std::string& name : names) lists.emplace_back(folder / name);
    }
    return lists;
  }

  std::optional<std::vector<std::string>> FirstUsable(const std::vector<std::string>& names) const {
    for (const std::string& name : names) {
      if (std::find(removed_.begin(), removed_.end(), name) != removed_.end()) continue;
      if (const auto file = EntryFile(name)) {
        if (auto command = CommandOf(DesktopFile(*file))) return command;
      }
    }
    return std::nullopt;
  }

  // Word processors open text, too, and nobody has put these names in order.
  std::vector<std::string> EditorsFirst(std::vector<std::string> names) const {
    std::stable_partition(names.begin(), names.end(), [this](const std::string& name) {
      const auto file = EntryFile(name);
      if (!file) return false;
      const auto categories = DesktopFile(*file).List(entryGroup, "Categories");
      return std::find(categories.begin(), categories.end(), "TextEditor") != categories.end();
    });
    return names;
  }

  // "maker-edit.desktop" is that file, or "edit.desktop" in the folder "maker".
  std::optional<fs::path> EntryFile(const std::string& name) const {
    for (const fs::path& folder : applications_) {
      std::string relative = name;
      while (true) {
        std::error_code error;
        if (fs::is_regular_file(folder / relative, error)) return folder / relative;
        const std::size_t dash = relative.find('-');
        if (dash == std::string::npos) break;
        relative[dash] = '/';
      }
    }
    return std::nullopt;
  }

  // Nothing for an entry that is hidden, not installed, or needs a terminal, which we have not.
  std::optional<std::vector<std::string>> CommandOf(const DesktopFile& entry) const {
    if (entry.IsTrue(entryGroup, "Hidden") || entry.IsTrue(entryGroup, "Terminal")) return std::nullopt;
    const std::string_view tried = entry.Value(entryGroup, "TryExec");
    if (!tried.empty() && !FindProgram(tried, environment_)) return std::nullopt;
    auto words = CommandWords(entry.Value(entryGroup, "Exec"));
    if (!words || words->empty()) return std::nullopt;
    const auto program = FindProgram(words->front(), environment_);
    if (!program) return std::nullopt;
    words->front() = program->string();
    return words;
  }

  const Environment& environment_;
  std::vector<fs::path> settings_;      // folders that may hold a list of associations
  std::vector<fs::path> applications_;  // folders of the applications' entries
  std::vector<std::string> removed_;
};

}  // namespace

std::optional<fs::path> FindProgram(std::string_view name, const Environment& environment) {
  if (name.empty()) return std::nullopt;
  if (name.find('/') != std::string_view::npos) {
    return IsRunnable(name) ? std::optional<fs::path>(name) : std::nullopt;
  }
  for (const std::string& folder : SplitAtColons(environment("PATH"))) {
    const fs::path program = fs::path(folder) / name;
    if (IsRunnable(program)) return program;
  }
  return std::nullopt;
}

std::optional<std::vector<std::string>> FindTextEditor(const Environment& environment) {
  return EditorSearch(environment).Find();
}

}  // namespace quarlin
