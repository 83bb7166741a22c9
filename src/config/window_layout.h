// SPDX-License-Identifier: GPL-3.0-or-later
// What position.ini keeps of the windows: values by section and key in initialisation-file syntax, a section
// for each window. Whoever keeps something says how its value reads; a value that makes no sense is for him
// to pass over, so that one of them spoils no other.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "base/profile_text.h"

namespace quarlin {

class WindowLayout {
 public:
  static constexpr std::size_t mostBytes = std::size_t{256} * 1024;

  // Reads the file. One that is missing keeps nothing, and so does one that is no text or is beyond
  // mostBytes.
  explicit WindowLayout(std::filesystem::path file);

  // Why nothing was taken from a file that is there, for the status bar; empty where nothing is wrong.
  const std::string& Trouble() const { return trouble_; }

  // There was no file, so the program is here for the first time.
  bool IsNew() const { return isNew_; }

  // As set last, else as read; empty when there is none.
  std::string Value(std::string_view section, std::string_view key) const;

  // A value of whole numbers with commas between them, each from `least` to `most`; nothing when it is not.
  std::optional<std::vector<int>> Numbers(std::string_view section, std::string_view key, int least,
                                          int most) const;

  // Kept by Save. A value with a line end in it, or beyond what a reader takes, is not kept; an empty one
  // removes the entry.
  void Set(std::string_view section, std::string_view key, std::string_view value);

  // Puts what was set into the file as it is by now, so that what others wrote into it meanwhile stays. A
  // file that nothing could be taken from is replaced. One that needs no change is not touched.
  std::error_code Save() const;

 private:
  std::filesystem::path file_;
  ProfileText read_;
  std::string trouble_;
  bool isNew_ = false;
  std::map<std::pair<std::string, std::string>, std::string> set_;  // by section and key
};

// "12,-3" of {12, -3}.
std::string NumbersText(const std::vector<int>& numbers);

}  // namespace quarlin
