// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/examples.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "base/files.h"
#include "base/text.h"

namespace quarlin {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t mostNamed = 3;
constexpr std::size_t mostBytes = std::size_t{16} << 20;  // of one file
constexpr std::string_view scriptFolder = "scripts";

// "Command.txt, config.cfg, Parser.txt and 2 more".
std::string Named(const std::vector<std::string>& names) {
  const std::size_t named = std::min(names.size(), mostNamed);
  std::string text =
      fmt::format("{}", fmt::join(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(named), ", "));
  if (names.size() > named) text += fmt::format(" and {} more", names.size() - named);
  return text;
}

std::string CountOf(std::size_t files) {
  return fmt::format("{} file{}", files, files == 1 ? "" : "s");
}

// The files of a folder and of those in it, relative to it, in the order of their names.
std::vector<fs::path> FilesBelow(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> files;
  auto entry =
      fs::recursive_directory_iterator(folder, fs::directory_options::follow_directory_symlink, error);
  for (const auto end = fs::recursive_directory_iterator(); !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored)) files.push_back(entry->path().lexically_relative(folder));
  }
  std::sort(files.begin(), files.end());
  return files;
}

fs::path PlaceOf(const fs::path& example) {
  return example.parent_path() == scriptFolder ? example.filename() : example;
}

std::error_code CopyNew(const fs::path& from, const fs::path& to) {
  const FileContent content = ReadFileUpTo(from, mostBytes);
  if (content.error) return content.error;
  std::error_code error;
  fs::create_directories(to.parent_path(), error);
  return error ? error : WriteNewFile(to, content.bytes);
}

bool IsOurs(std::string_view name) {
  constexpr std::array<std::string_view, 14> names{
      "config.cfg", "position.ini", "Command.txt", "Parser.txt",     "sequence.txt",
      "Quick.txt",  "History.txt",  "Dialog.txt",  "Conversion.txt", "LOG.TXT",
      "LOGPAR.TXT", "Report.txt",   "Report.json", "junit.xml"};
  const auto is = [name](std::string_view ours) { return EqualsIgnoringCase(name, ours); };
  return std::any_of(names.begin(), names.end(), is) || name.ends_with(".vbs") || name.ends_with(".js");
}

}  // namespace

bool CopiedExamples::Copied(std::string_view name) const {
  return std::find(copied.begin(), copied.end(), name) != copied.end();
}

std::string CopiedExamples::Text(const fs::path& folder) const {
  std::string text = failed.empty() ? "" : "not copied: " + Named(failed) + "; ";
  if (!kept.empty()) text += "there already, and left as they are: " + Named(kept) + "; ";
  if (copied.empty()) return text + "no example was copied";
  return text +
         fmt::format("{} of examples copied to {}", CountOf(copied.size()), BytesFromUtf8(folder.string()));
}

CopiedExamples CopyExamples(const fs::path& examples, const ProgramFolder& folder) {
  CopiedExamples outcome;
  std::error_code unreadable;
  for (const fs::path& example : FilesBelow(examples, unreadable)) {
    const fs::path place = PlaceOf(example);
    const std::string name = BytesFromUtf8(place.string());
    const fs::path target =
        ProgramFolder(folder.Path() / place.parent_path()).File(place.filename().string());
    const std::error_code error = CopyNew(examples / example, target);
    if (!error) {
      outcome.copied.push_back(name);
    } else if (error == std::errc::file_exists) {
      outcome.kept.push_back(name);
    } else {
      outcome.failed.push_back(name + ": " + error.message());
    }
  }
  if (unreadable) {
    outcome.failed.push_back(BytesFromUtf8(examples.string()) + ": " + unreadable.message());
  }
  return outcome;
}

bool IsUntouched(const ProgramFolder& folder) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder.Path(), error)) {
    if (IsOurs(entry.path().filename().string())) return false;
  }
  return !error;
}

}  // namespace quarlin
