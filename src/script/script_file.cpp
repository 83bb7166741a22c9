// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/files.h"
#include "base/text.h"
#include "script/script_text.h"
#include "script/values/conversions.h"
#include "script/values/error.h"

namespace quarlin {
namespace fs = std::filesystem;

std::vector<std::string> ListScripts(const fs::path& folder, std::string_view extension) {
  std::vector<std::string> names;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
    if (!EqualsIgnoringCase(entry.path().extension().string(), extension)) continue;
    std::error_code ignored;
    if (entry.is_regular_file(ignored)) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
    return std::pair(ToUpper(left), left) < std::pair(ToUpper(right), right);
  });
  return names;
}

std::string_view LanguageOf(std::string_view fileName) {
  return ToUpper(fileName).find(".VBS") != std::string::npos ? "VBScript" : "JScript";
}

namespace {

constexpr std::array utf16Marks = std::to_array<std::string_view>({"\xFE\xFF", "\xFF\xFE"});

// The mark that a text in UTF-16 should begin with: there most bytes of one half of the units are zero, while
// a text of single bytes holds none.
std::string_view MissingMark(std::string_view content) {
  if (content.starts_with(utf16Marks[0]) || content.starts_with(utf16Marks[1])) return {};
  constexpr std::size_t looked = 4096;
  const std::string_view beginning = content.substr(0, looked);
  std::array<std::size_t, 2> zeros{};
  for (std::size_t i = 0; i < beginning.size(); ++i) zeros[i % 2] += beginning[i] == '\0' ? 1 : 0;
  for (std::size_t half = 0; half < zeros.size(); ++half) {
    if (zeros[half] > beginning.size() / 4 && zeros[1 - half] < zeros[half] / 8) return utf16Marks[half];
  }
  return {};
}

// Old editors end a file with Ctrl-Z, and some fill a block with more of it.
std::string_view WithoutEndMark(std::string_view text) {
  constexpr std::string_view fill("\x1A\0 \t\r\n", 6);
  const std::size_t end = text.find('\x1A', text.find_last_not_of(fill) + 1);
  return text.substr(0, end);
}

std::string ContentOf(const fs::path& path) {
  FileContent content = ReadFileUpTo(path, longestScript);
  if (!content.error) return std::move(content.bytes);
  if (content.error == std::errc::file_too_large) {
    vbs::ScriptError error(vbs::outOfMemory, Utf16FromBytes(path.filename().string()));
    error.description = u"A script has 16 MiB at most";
    throw error;
  }
  std::error_code ignored;
  throw vbs::ScriptError(fs::exists(path, ignored) ? vbs::permissionDenied : vbs::fileNotFound);
}

}  // namespace

ScriptText ReadScript(const fs::path& path) {
  return ScriptTextOf(ContentOf(path));
}

ScriptText ScriptTextOf(std::string content) {
  content.insert(0, MissingMark(content));
  const FileText file = FileTextOf(content);
  const bool isUtf16 = content.starts_with(utf16Marks[0]) || content.starts_with(utf16Marks[1]);
  ScriptText script{{}, isUtf16 ? "UTF-16" : file.isUtf8 ? "UTF-8" : "one byte a character"};
  for (const std::string& line : SplitLines(WithoutEndMark(file.text))) {
    script.text += file.isUtf8 ? vbs::Utf16Of(line) : Utf16FromBytes(line);
    script.text += u"\r\n";
  }
  return script;
}

}  // namespace quarlin
