// SPDX-License-Identifier: GPL-3.0-or-later
// How a file gets new content without ever being half of it; see WriteWholeFile for what it promises.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

#include "base/file_handle.h"
#include "base/files.h"

namespace quarlin {

class FileReplacement {
 public:
  // Goes to where links lead. What is wrong there is told by the calls below.
  explicit FileReplacement(const std::filesystem::path& file);

  // Adds what the file holds behind its first `position` bytes to `content`.
  std::error_code ReadBehind(std::size_t position, std::string& content) const;

  // Once.
  std::error_code Write(const FillFile& fill) const;

 private:
  bool Exists() const { return old_.Get() >= 0; }
  std::error_code WriteBeside(const FillFile& fill) const;
  std::error_code WriteInPlace(const FillFile& fill) const;

  std::filesystem::path file_;
  struct stat status_ {};    // of the file that is there
  FileHandle old_;           // that file, open for reading and writing; none where there is none yet
  std::error_code refusal_;  // why it is not to be written
};

// Why a thing is not written to as a file: no error for a regular one.
std::error_code RefusalOf(const struct stat& status);

// Writes to a descriptor that does not block; what could not be written stays in `content`.
std::error_code WriteAll(int descriptor, std::string_view& content);

}  // namespace quarlin
