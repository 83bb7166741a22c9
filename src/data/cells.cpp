// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cells.h"

#include <algorithm>

#include "base/text.h"
#include "data/number_text.h"

namespace quarlin {

std::optional<std::string_view> Cells::Next() {
  if (separator_ == ' ') return NextOfBlanks();
  if (ended_) return std::nullopt;
  const std::size_t start = rest_.find_first_not_of(' ');
  if (start != std::string_view::npos && rest_[start] == '"') return Quoted(start);
  const std::size_t end = rest_.find(separator_);
  const std::string_view cell = rest_.substr(0, end);
  ended_ = end == std::string_view::npos;
  rest_.remove_prefix(ended_ ? rest_.size() : end + 1);
  return cell;
}

std::optional<std::string_view> Cells::NextOfBlanks() {
  constexpr std::string_view blanks = " \t";
  rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size()));
  if (rest_.empty()) return std::nullopt;
  const std::string_view cell = rest_.substr(0, rest_.find_first_of(blanks));
  rest_.remove_prefix(cell.size());
  return cell;
}

// The cell whose opening quote stands there; a quote within is written twice and stays so.
std::string_view Cells::Quoted(std::size_t quote) {
  std::size_t close = rest_.find('"', quote + 1);
  while (close != std::string_view::npos && rest_.substr(close + 1).starts_with('"')) {
    close = rest_.find('"', close + 2);
  }
  const std::string_view cell =
      rest_.substr(quote + 1, close == std::string_view::npos ? close : close - quote - 1);
  const std::size_t end = close == std::string_view::npos ? close : rest_.find(separator_, close);
  ended_ = end == std::string_view::npos;
  rest_.remove_prefix(ended_ ? rest_.size() : end + 1);
  return cell;
}

std::optional<std::string_view> CellAt(std::string_view row, int place, char separator) {
  Cells cells(row, separator);
  auto cell = cells.Next();
  for (int i = 1; cell && i < place; ++i) cell = cells.Next();
  return cell;
}

namespace {

std::size_t CellsOf(std::string_view row, char separator) {
  Cells cells(row, separator);
  std::size_t count = 0;
  while (cells.Next()) ++count;
  return count;
}

// Whether most of the rows have at least two columns with this separator.
bool Separates(std::span<const std::string> rows, char separator) {
  const auto several = std::count_if(rows.begin(), rows.end(),
                                     [&](const std::string& row) { return CellsOf(row, separator) > 1; });
  return static_cast<std::size_t>(several) * 2 > rows.size();
}

// Whether a comma of the row belongs to none of its numbers.
bool HasFreeComma(std::string_view row) {
  const auto commas = static_cast<std::size_t>(std::count(row.begin(), row.end(), ','));
  std::size_t taken = 0;
  NumberScanner numbers(row);
  while (numbers.Next()) {
    const auto number = row.substr(numbers.Begin(), numbers.End() - numbers.Begin());
    taken += static_cast<std::size_t>(std::count(number.begin(), number.end(), ','));
  }
  return taken < commas;
}

// A row of words over rows that have as many commas: "time,value" over "1,25".
bool IsHeadedByCommas(std::span<const std::string> rows) {
  const bool words = !NumberScanner(rows.front()).Next();
  const std::size_t columns = CellsOf(rows.front(), ',');
  return words && columns > 1 && std::all_of(rows.begin(), rows.end(), [&](const std::string& row) {
           return CellsOf(row, ',') == columns;
         });
}

bool SeparatesByComma(std::span<const std::string> rows) {
  if (!Separates(rows, ',')) return false;
  if (IsHeadedByCommas(rows)) return true;
  const auto free = std::count_if(rows.begin(), rows.end(), HasFreeComma);
  return static_cast<std::size_t>(free) * 2 >= rows.size();
}

}  // namespace

char SeparatorOf(std::span<const std::string> rows) {
  if (rows.empty()) return ';';
  for (const char separator : {';', '\t'}) {
    if (Separates(rows, separator)) return separator;
  }
  if (SeparatesByComma(rows)) return ',';
  return Separates(rows, ' ') ? ' ' : ';';
}

}  // namespace quarlin
