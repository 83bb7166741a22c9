// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/script_file.h"

#include <algorithm>

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

std::u16string ReadScript(const fs::path& path) {
  const std::optional<std::string> content = ReadWholeFile(path);
  if (!content) {
    std::error_code ignored;
    throw vbs::ScriptError(fs::exists(path, ignored) ? vbs::permissionDenied : vbs::fileNotFound);
  }
  const FileText file = FileTextOf(*content);
  std::u16string text;
  for (const std::string& line : SplitLines(file.text)) {
    text += file.isUtf8 ? vbs::Utf16Of(line) : Utf16FromBytes(line);
    text += u"\r\n";
  }
  return text;
}

}  // namespace quarlin
