// SPDX-License-Identifier: GPL-3.0-or-later
// The text of a file in initialisation-file syntax, to be changed: what is not set stays as it stands,
// comments, blank lines and sections of others among it. See profile_file.h for the syntax and for which of
// two equal names counts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

class ProfileText {
 public:
  explicit ProfileText(std::string_view text = "");

  // The value that a reader finds; empty when there is none. Valid until the next change.
  std::string_view Value(std::string_view section, std::string_view key) const;

  // In the place of the entry that is there, else behind the last one of its section. Neither the names nor
  // the value have a line end in them.
  void Set(std::string_view section, std::string_view key, std::string_view value);
  void Remove(std::string_view section, std::string_view key);

  // With the line ends that the text came with.
  std::string Text() const;

 private:
  struct Range {
    std::size_t begin, end;  // the lines below the section's heading
  };

  std::optional<Range> Section(std::string_view name) const;
  std::optional<std::size_t> Entry(const Range& lines, std::string_view key) const;

  std::vector<std::string> lines_;
  std::string_view lineEnd_;
};

}  // namespace quarlin
