// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/window_layout.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

#include "base/files.h"
#include "base/profile_file.h"
#include "base/text.h"

namespace quarlin {
namespace {

// Text has no other control characters than these.
bool IsText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    return static_cast<unsigned char>(character) >= ' ' || character == '\t' || character == '\r' ||
           character == '\n' || character == '\f' || character == '\x1A';
  });
}

struct ReadText {
  std::string text;
  std::string trouble;
  bool missing = false;
};

ReadText ReadLayoutText(const std::filesystem::path& file) {
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::not_found) return {{}, {}, true};
  const auto size = std::filesystem::file_size(file, error);
  if (!error && size > WindowLayout::mostBytes) {
    return {{}, fmt::format("it has {} KiB, more than a layout needs", size / 1024)};
  }
  const auto content = ReadWholeFile(file);
  if (!content) return {{}, "it cannot be read"};
  std::string text = FileTextOf(*content).text;
  if (!IsText(text)) return {{}, "it is no text"};
  return {std::move(text), {}};
}

}  // namespace

WindowLayout::WindowLayout(std::filesystem::path file) : file_(std::move(file)) {
  ReadText read = ReadLayoutText(file_);
  isNew_ = read.missing;
  read_ = ProfileText(read.text);
  if (read.trouble.empty()) return;
  trouble_ = fmt::format("{} was passed over: {}", BytesFromUtf8(file_.filename().string()), read.trouble);
}

std::string WindowLayout::Value(std::string_view section, std::string_view key) const {
  const auto found = set_.find({std::string(section), std::string(key)});
  return found != set_.end() ? found->second : std::string(read_.Value(section, key));
}

std::optional<std::vector<int>> WindowLayout::Numbers(std::string_view section, std::string_view key,
                                                      int least, int most) const {
  const std::string value = Value(section, key);
  std::vector<int> numbers;
  const char* at = value.data();
  const char* const end = at + value.size();
  for (;; ++at) {
    int number = 0;
    const auto [behind, error] = std::from_chars(at, end, number);
    if (error != std::errc() || number < least || number > most) return std::nullopt;
    numbers.push_back(number);
    at = behind;
    if (at == end) return numbers;
    if (*at != ',') return std::nullopt;
  }
}

void WindowLayout::Set(std::string_view section, std::string_view key, std::string_view value) {
  if (value.find_first_of("\r\n") != std::string_view::npos) return;
  if (value.size() + 2 > ProfileFile::longestValue) return;
  set_[{std::string(section), std::string(key)}] = value;
}

std::error_code WindowLayout::Save() const {
  const ReadText now = ReadLayoutText(file_);
  ProfileText text(now.text);
  for (const auto& [place, value] : set_) {
    if (value.empty()) {
      text.Remove(place.first, place.second);
    } else if (text.Value(place.first, place.second) != value) {
      text.Set(place.first, place.second, value);
    }
  }
  const std::string whole = text.Text();
  if (whole == now.text && now.trouble.empty()) return {};
  return WriteWholeFile(file_, whole);
}

std::string NumbersText(const std::vector<int>& numbers) {
  return fmt::format("{}", fmt::join(numbers, ","));
}

}  // namespace quarlin
