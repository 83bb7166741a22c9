// SPDX-License-Identifier: GPL-3.0-or-later
// The text format of the desktop's settings: groups in brackets with lines "key=value".
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

// One file of that format.
class DesktopFile {
 public:
  // Empty when the file cannot be read.
  explicit DesktopFile(const std::filesystem::path& file);

  // The value as written, or "".
  std::string_view Value(std::string_view group, std::string_view key) const;
  bool IsTrue(std::string_view group, std::string_view key) const { return Value(group, key) == "true"; }

  // A value that lists names separated by ";".
  std::vector<std::string> List(std::string_view group, std::string_view key) const;

 private:
  std::string content_;
};

// The words of an "Exec" value: quotes and escapes resolved, the codes that stand for files and for the
// entry's own fields left out. Nothing when a quote is never closed.
std::optional<std::vector<std::string>> CommandWords(std::string_view exec);

}  // namespace quarlin
