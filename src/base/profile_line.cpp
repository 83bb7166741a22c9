// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile_line.h"

namespace quarlin {
namespace {

std::string_view Trim(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

ProfileLine ReadEntry(std::string_view line) {
  const std::size_t equals = line.find('=');
  const std::string_view key = Trim(line.substr(0, equals));
  if (equals == std::string_view::npos || key.empty()) return {};
  return {ProfileLine::Kind::Entry, key, WithoutQuotes(Trim(line.substr(equals + 1)))};
}

}  // namespace

ProfileLine ReadProfileLine(std::string_view line) {
  line = Trim(line);
  if (line.empty() || line.front() == ';') return {};
  const std::size_t close = line.front() == '[' ? line.find(']') : std::string_view::npos;
  if (close == std::string_view::npos) return ReadEntry(line);
  return {ProfileLine::Kind::Section, Trim(line.substr(1, close - 1)), {}};
}

std::string_view TakeProfileLine(std::string_view& text) {
  const std::size_t end = text.find_first_of("\r\n");
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

std::string QuotedProfileValue(std::string_view value) {
  return WithoutQuotes(Trim(value)) == value ? std::string(value) : '"' + std::string(value) + '"';
}

}  // namespace quarlin
