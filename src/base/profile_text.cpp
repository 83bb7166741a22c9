// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile_text.h"

#include "base/profile_line.h"
#include "base/text.h"

namespace quarlin {

ProfileText::ProfileText(std::string_view text)
    : lines_(SplitLines(text)), lineEnd_(text.find("\r\n") != std::string_view::npos ? "\r\n" : "\n") {}

std::optional<ProfileText::Range> ProfileText::Section(std::string_view name) const {
  std::optional<Range> found;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const ProfileLine line = ReadProfileLine(lines_[i]);
    if (line.kind != ProfileLine::Kind::Section) continue;
    if (found) return Range{found->begin, i};
    if (EqualsIgnoringCase(line.name, name)) found = Range{i + 1, lines_.size()};
  }
  return found;
}

std::optional<std::size_t> ProfileText::Entry(const Range& lines, std::string_view key) const {
  for (std::size_t i = lines.begin; i < lines.end; ++i) {
    const ProfileLine line = ReadProfileLine(lines_[i]);
    if (line.kind == ProfileLine::Kind::Entry && EqualsIgnoringCase(line.name, key)) return i;
  }
  return std::nullopt;
}

std::string_view ProfileText::Value(std::string_view section, std::string_view key) const {
  const auto lines = Section(section);
  const auto entry = lines ? Entry(*lines, key) : std::nullopt;
  return entry ? ReadProfileLine(lines_[*entry]).value : std::string_view();
}

void ProfileText::Set(std::string_view section, std::string_view key, std::string_view value) {
  auto lines = Section(section);
  if (!lines) {
    if (!lines_.empty()) lines_.emplace_back();
    lines_.push_back('[' + std::string(section) + ']');
    lines = Range{lines_.size(), lines_.size()};
  }
  std::string line = std::string(key) + '=' + QuotedProfileValue(value);
  if (const auto entry = Entry(*lines, key)) {
    lines_[*entry] = std::move(line);
    return;
  }
  std::size_t place = lines->end;
  while (place > lines->begin && TrimBlanks(lines_[place - 1]).empty()) --place;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), std::move(line));
}

void ProfileText::Remove(std::string_view section, std::string_view key) {
  const auto lines = Section(section);
  const auto entry = lines ? Entry(*lines, key) : std::nullopt;
  if (entry) lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(*entry));
}

std::string ProfileText::Text() const {
  std::string text;
  for (const std::string& line : lines_) text.append(line).append(lineEnd_);
  return text;
}

}  // namespace quarlin
