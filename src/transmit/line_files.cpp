#include "transmit/line_files.h"

#include "base/files.h"
#include "base/text.h"

namespace quarlin {

std::vector<std::string> ReadListFile(const std::filesystem::path& file) {
  const auto content = ReadWholeFile(file);
  if (!content) return {};
  std::vector<std::string> lines = SplitLines(BytesFromFileText(*content));
  std::erase_if(lines, [](const std::string& line) { return line.empty(); });
  return lines;
}

void SequenceFile::Restart() {
  lines_ = ReadListFile(file_);
  number_ = 0;
}

std::string SequenceFile::NextLine() {
  if (lines_.empty()) return {};
  number_ = number_ % lines_.size() + 1;
  return lines_[number_ - 1];
}

}  // namespace quarlin
