// SPDX-License-Identifier: GPL-3.0-or-later
// The script files of a folder, and what a file's name and content say.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

// The names of the folder's files that end in `extension` (".vbs") in any case, sorted without regard to
// case. Empty when the folder cannot be read.
std::vector<std::string> ListScripts(const std::filesystem::path& folder, std::string_view extension);

// "VBScript" where the name holds ".VBS" in any case and anywhere, "JScript" otherwise.
std::string_view LanguageOf(std::string_view fileName);

struct ScriptText {
  std::u16string text;        // each line followed by CR LF
  std::string_view encoding;  // "UTF-8": what its bytes were taken for
};

inline constexpr std::size_t longestScript = std::size_t{16} << 20;  // bytes

// The text of a script: UTF-16 of either order, with a mark or without, UTF-8 when it is well-formed,
// otherwise byte for byte; without a Ctrl-Z at its end.
ScriptText ScriptTextOf(std::string content);

// The same of a file. Throws ScriptError 53 where there is no such file, 7 where it is longer than
// longestScript, 70 where it cannot be read.
ScriptText ReadScript(const std::filesystem::path& file);

}  // namespace quarlin
