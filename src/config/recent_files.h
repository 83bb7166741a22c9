// SPDX-License-Identifier: GPL-3.0-or-later
// The files that were used last, the latest first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <vector>

namespace quarlin {

class RecentFiles {
 public:
  static constexpr std::size_t most = 8;

  const std::vector<std::filesystem::path>& Files() const { return files_; }

  // Puts it in front; the oldest beyond `most` leaves.
  void Use(const std::filesystem::path& file) {
    Drop(file);
    files_.insert(files_.begin(), file);
    files_.resize(std::min(files_.size(), most));
  }
  void Drop(const std::filesystem::path& file) { std::erase(files_, file); }

 private:
  std::vector<std::filesystem::path> files_;
};

}  // namespace quarlin
