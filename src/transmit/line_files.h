// The text files that commands come from: one entry a line, empty lines left out.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace quarlin {

// The entries of a list file, such as Command.txt or Parser.txt; empty when there is no such file.
std::vector<std::string> ReadListFile(const std::filesystem::path& file);

// sequence.txt: its lines in turn, from the first again after the last. The file is read when the
// sequence starts, so it can be edited between two runs.
class SequenceFile {
 public:
  explicit SequenceFile(std::filesystem::path file) : file_(std::move(file)) {}

  // Reads the file; the next line is the first.
  void Restart();

  // The next line, or empty when there is none.
  std::string NextLine();

  // The number of the line that NextLine gave last, from 1; 0 before the first.
  std::size_t LineNumber() const { return number_; }
  bool Empty() const { return lines_.empty(); }

 private:
  std::filesystem::path file_;
  std::vector<std::string> lines_;
  std::size_t number_ = 0;
};

}  // namespace quarlin
