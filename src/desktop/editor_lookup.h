// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the user's text editor, as the desktop's settings name it. Read from the settings files themselves:
// no other program is asked, so it costs next to nothing at start-up.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/program_folder.h"

namespace quarlin {

// The command that opens plain text, ready for file names to be added: the program's full path and its
// arguments. Nothing when no installed application opens text in a window of its own.
std::optional<std::vector<std::string>> FindTextEditor(const Environment& environment);

// A program by path, or by name in the folders of PATH; nothing when it cannot be run.
std::optional<std::filesystem::path> FindProgram(std::string_view name, const Environment& environment);

}  // namespace quarlin
