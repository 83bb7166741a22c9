// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/table_header.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "data/cells.h"
#include "data/row_time.h"

namespace quarlin {
namespace {

constexpr std::size_t rowsBelow = 3;  // are looked at: one may hold units, another no number

constexpr std::array<std::string_view, 12> placeholders{
    "NAN", "OVER", "OVERLOAD", "OVLD", "OL", "UNDER", "UNDERLOAD", "UL", "ERR", "ERROR", "INF", "INFINITY"};

bool IsName(std::string_view cell) {
  const std::string word = ToUpper(TrimBlanks(cell));
  if (std::find(placeholders.begin(), placeholders.end(), word) != placeholders.end()) return false;
  return std::any_of(word.begin(), word.end(), [](char character) {
    return (character >= 'A' && character <= 'Z') || static_cast<unsigned char>(character) >= 0x80;
  });
}

template <typename Test>
bool AnyCell(std::string_view row, char separator, Test test) {
  Cells cells(row, separator);
  while (const auto cell = cells.Next()) {
    if (test(*cell)) return true;
  }
  return false;
}

bool HasNumber(std::string_view row, char separator) {
  return AnyCell(row, separator, [](std::string_view cell) { return TimeIn(cell).has_value(); });
}

// The column, from 1, in which the n-th number of a row stands; 0: there is none.
int ColumnOfNumber(std::string_view row, int place, char separator) {
  Cells cells(row, separator);
  int column = 0;
  while (const auto cell = cells.Next()) {
    ++column;
    NumberScanner numbers(*cell);
    while (numbers.Next()) {
      if (--place == 0) return column;
    }
  }
  return 0;
}

}  // namespace

bool IsHeaded(std::span<const std::string> rows, char separator) {
  if (rows.size() < 2 || HasNumber(rows.front(), separator)) return false;
  const auto below = rows.subspan(1, std::min(rowsBelow, rows.size() - 1));
  return AnyCell(rows.front(), separator, IsName) &&
         std::any_of(below.begin(), below.end(),
                     [&](const std::string& row) { return HasNumber(row, separator); });
}

CurveHead HeadOf(std::string_view cell) {
  std::string_view text = TrimBlanks(cell);
  const bool bracketed = text.ends_with(']') || text.ends_with(')');
  const std::size_t open = bracketed ? text.rfind(text.back() == ']' ? '[' : '(') : std::string_view::npos;
  if (open == std::string_view::npos || open == 0) return {std::string(text), {}};
  const std::string_view unit = text.substr(open + 1, text.size() - open - 2);
  return {std::string(TrimBlanks(text.substr(0, open))), std::string(TrimBlanks(unit))};
}

CurveHead HeadFor(const NumberRule& rule, std::span<const std::string> rows, char separator) {
  const int column = rule.kind == NumberRule::Kind::Column ? rule.place
                     : rule.kind == NumberRule::Kind::Nth  ? ColumnOfNumber(rows[1], rule.place, separator)
                                                           : 0;
  const auto cell = column > 0 ? CellAt(rows[0], column, separator) : std::nullopt;
  return cell ? HeadOf(*cell) : CurveHead{};
}

}  // namespace quarlin
