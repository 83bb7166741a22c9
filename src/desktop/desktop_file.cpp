// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/desktop_file.h"

#include "base/files.h"
#include "base/text.h"

namespace quarlin {
namespace {

std::string_view WithoutReturn(std::string_view line) {
  return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

// The escapes of any string value.
std::string Unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    switch (value[++i]) {
      case 's':
        text += ' ';
        break;
      case 'n':
        text += '\n';
        break;
      case 't':
        text += '\t';
        break;
      case 'r':
        text += '\r';
        break;
      case '\\':
        text += '\\';
        break;
      default:
        text.append({'\\', value[i]});
    }
  }
  return text;
}

// Takes the words of a command apart, one character at a time.
class WordSplitter {
 public:
  std::optional<std::vector<std::string>> Split(std::string_view command) {
    for (std::size_t i = 0; i < command.size(); ++i) {
      const char character = command[i];
      const bool pair = i + 1 < command.size();
      if (character == '"') {
        quoted_ = !quoted_;
        hasWord_ = true;
      } else if (quoted_ && character == '\\' && pair) {
        Add(command[++i]);
      } else if (character == '%' && pair) {
        if (command[++i] == '%') Add('%');
      } else if (!quoted_ && (character == ' ' || character == '\t')) {
        EndWord();
      } else {
        Add(character);
      }
    }
    EndWord();
    if (quoted_) return std::nullopt;
    return words_;
  }

 private:
  void Add(char character) {
    word_ += character;
    hasWord_ = true;
  }

  void EndWord() {
    if (hasWord_) words_.push_back(word_);
    word_.clear();
    hasWord_ = false;
  }

  std::vector<std::string> words_;
  std::string word_;
  bool hasWord_ = false;  // an empty pair of quotes is a word, a code alone is none
  bool quoted_ = false;
};

}  // namespace

DesktopFile::DesktopFile(const std::filesystem::path& file)
    : content_(ReadWholeFile(file).value_or(std::string())) {}

std::string_view DesktopFile::Value(std::string_view group, std::string_view key) const {
  std::string_view rest = content_;
  bool inGroup = false;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = WithoutReturn(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.starts_with('[')) {
      inGroup = line.size() == group.size() + 2 && line.substr(1, group.size()) == group;
    } else if (inGroup && line.starts_with(key)) {
      const std::string_view tail = TrimBlanks(line.substr(key.size()));
      if (tail.starts_with('=')) return TrimBlanks(tail.substr(1));
    }
  }
  return {};
}

std::vector<std::string> DesktopFile::List(std::string_view group, std::string_view key) const {
  std::vector<std::string> names;
  std::string_view rest = Value(group, key);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    const std::string_view name = TrimBlanks(rest.substr(0, end));
    if (!name.empty()) names.emplace_back(name);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return names;
}

std::optional<std::vector<std::string>> CommandWords(std::string_view exec) {
  return WordSplitter().Split(Unescaped(exec));
}

}  // namespace quarlin
