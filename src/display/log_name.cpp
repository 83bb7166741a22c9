// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/log_name.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr char partMacro = 'p';  // ours alone: where the number of a second file goes
constexpr unsigned highestNumber = 999'999;

std::chrono::year_month_day DateOf(LocalTime time) {
  return std::chrono::year_month_day(floor<std::chrono::days>(time));
}

int FullYear(LocalTime time) {
  return static_cast<int>(DateOf(time).year());
}

int DayOfYear(LocalTime time) {
  const auto day = floor<std::chrono::days>(time);
  const std::chrono::local_days first(std::chrono::year(FullYear(time)) / std::chrono::January / 1);
  return static_cast<int>((day - first).count()) + 1;
}

std::chrono::hh_mm_ss<std::chrono::seconds> TimeOf(LocalTime time) {
  return std::chrono::hh_mm_ss(floor<std::chrono::seconds>(time - floor<std::chrono::days>(time)));
}

struct TimeMacro {
  char letter;
  int digits;
  int (*value)(LocalTime time);
};

constexpr std::array<TimeMacro, 8> timeMacros{{
    {'Y', 4, FullYear},
    {'y', 2, [](LocalTime time) { return FullYear(time) % 100; }},
    {'m', 2, [](LocalTime time) { return static_cast<int>(static_cast<unsigned>(DateOf(time).month())); }},
    {'d', 2, [](LocalTime time) { return static_cast<int>(static_cast<unsigned>(DateOf(time).day())); }},
    {'j', 3, DayOfYear},
    {'H', 2, [](LocalTime time) { return static_cast<int>(TimeOf(time).hours().count()); }},
    {'M', 2, [](LocalTime time) { return static_cast<int>(TimeOf(time).minutes().count()); }},
    {'S', 2, [](LocalTime time) { return static_cast<int>(TimeOf(time).seconds().count()); }},
}};

const TimeMacro* FindMacro(char letter) {
  const auto row = std::find_if(timeMacros.begin(), timeMacros.end(),
                                [&](const TimeMacro& macro) { return macro.letter == letter; });
  return row == timeMacros.end() ? nullptr : &*row;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    if (std::string_view(".[]{}()\\*+?|^$").find(character) != std::string_view::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

bool HasControlCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char each) { return static_cast<unsigned char>(each) < 32; });
}

}  // namespace

LogName::LogName(std::string_view pattern) {
  const std::size_t slash = pattern.rfind('/');
  if (slash != std::string_view::npos) {
    folder_ = slash == 0 ? "/" : pattern.substr(0, slash);
    pattern.remove_prefix(slash + 1);
  }
  if (folder_.string().find('%') != std::string::npos) {
    fault_ = "the folder in front of the name takes no macros";
  } else if (TrimBlanks(pattern).empty() || pattern == "." || pattern == "..") {
    fault_ = "it names no file";
  } else if (HasControlCharacter(pattern)) {
    fault_ = "it holds a control character";
  } else {
    Take(pattern);
  }
}

void LogName::Take(std::string_view pattern) {
  pieces_.emplace_back();
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char letter = pattern[i] == '%' ? (++i < pattern.size() ? pattern[i] : ' ') : '\0';
    if (letter == '\0' || letter == '%') {
      pieces_.back().literal += pattern[i];
    } else if (letter == 'n' && !hasNumber_) {
      hasNumber_ = true;
      pieces_.insert(pieces_.end(), {{letter, ""}, {}});
    } else if (FindMacro(letter) != nullptr) {
      pieces_.insert(pieces_.end(), {{letter, ""}, {}});
    } else {
      fault_ = i >= pattern.size() ? "a single % at its end"
               : letter == 'n'     ? "it has %n twice"
                                   : fmt::format("%{} is no macro", letter);
      return;
    }
  }
  if (!hasNumber_) AddPart();
}

// In front of the ending, or behind a name without one.
void LogName::AddPart() {
  const Piece& last = pieces_.back();
  const std::size_t dot = last.macro == 0 ? last.literal.rfind('.') : std::string::npos;
  std::string ending;
  if (dot != std::string::npos) ending = last.literal.substr(dot);
  if (dot != std::string::npos) pieces_.back().literal.resize(dot);
  pieces_.insert(pieces_.end(), {{partMacro, ""}, {0, ending}});
}

std::string LogName::TextOf(const Piece& piece, LocalTime time, unsigned number) const {
  if (piece.macro == 0) return piece.literal;
  if (piece.macro == 'n') return fmt::format("{:03}", number);
  if (piece.macro == partMacro) return number < 2 ? "" : fmt::format("-part{:03}", number);
  const TimeMacro& macro = *FindMacro(piece.macro);
  return fmt::format("{:0{}}", macro.value(time), macro.digits);
}

std::string LogName::At(LocalTime time, unsigned number) const {
  std::string name;
  for (const Piece& piece : pieces_) name += TextOf(piece, time, number);
  return name;
}

LogFileNames LogName::NamesAt(std::optional<LocalTime> time) const {
  std::string expression;
  for (const Piece& piece : pieces_) {
    if (piece.macro == 'n') {
      expression += "([0-9]{3,6})";
    } else if (piece.macro == partMacro) {
      expression += "(?:-part([0-9]{3,6}))?";
    } else if (piece.macro == 0 || time) {
      expression += Escaped(TextOf(piece, time.value_or(LocalTime()), 1));
    } else {
      expression += fmt::format("[0-9]{{{}}}", FindMacro(piece.macro)->digits);
    }
  }
  return LogFileNames(expression);
}

std::optional<unsigned> LogFileNames::NumberOf(const std::string& fileName) const {
  std::smatch found;
  if (!std::regex_match(fileName, found, expression_)) return std::nullopt;
  if (!found[1].matched) return 1;
  return std::min(static_cast<unsigned>(std::stoul(found[1].str())), highestNumber);
}

}  // namespace quarlin
