// SPDX-License-Identifier: GPL-3.0-or-later
// The examples: a program folder to start from, and how it is copied into the user's.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/program_folder.h"

namespace quarlin {

// Files by their names below the program folder.
struct CopiedExamples {
  std::vector<std::string> copied;
  std::vector<std::string> kept;    // were there before, and are as they were
  std::vector<std::string> failed;  // with the reason: "LOG.TXT: No space left on device"

  bool Copied(std::string_view name) const;

  // For the status bar.
  std::string Text(const std::filesystem::path& folder) const;
};

// Copies every file of the folder and of those in it, as files of the user's own. The scripts, which lie in a
// folder of their own, come where the script list looks for them: into the program folder itself. No file
// that is there is touched, in capitals or small letters. Links are followed.
CopiedExamples CopyExamples(const std::filesystem::path& examples, const ProgramFolder& folder);

// Nobody has worked in this folder yet: it holds no file that the program writes or reads.
bool IsUntouched(const ProgramFolder& folder);

}  // namespace quarlin
