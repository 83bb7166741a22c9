// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/line_files.h"

#include <fmt/format.h>

#include "base/files.h"
#include "base/text.h"

namespace quarlin {

std::string LineFile::Trouble(std::string_view name) const {
  if (error == std::errc::no_such_file_or_directory) return {};
  if (error == std::errc::file_too_large) return fmt::format("{} has more than 16 MiB and is not read", name);
  if (error) return fmt::format("{} cannot be read: {}", name, error.message());
  if (tooLong == 0) return {};
  return fmt::format("{}: {} of more than {} characters left out", name,
                     tooLong == 1 ? "1 line" : fmt::format("{} lines", tooLong), longestLine);
}

LineFile ReadLineFile(const ProgramFolder& folder, std::string_view name) {
  const FileContent content = ReadFileUpTo(folder.File(name), largestLineFile);
  LineFile file;
  file.error = content.error;
  file.lines = SplitLines(BytesFromFileText(content.bytes));
  std::erase_if(file.lines, [](const std::string& line) { return line.empty(); });
  file.tooLong = std::erase_if(file.lines, [](const std::string& line) { return line.size() > longestLine; });
  return file;
}

}  // namespace quarlin
