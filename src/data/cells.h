// SPDX-License-Identifier: GPL-3.0-or-later
// The columns of a row.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quarlin {

// One cell after the other. Quotes around a cell are taken off, so it may hold the separator; blanks as
// separator count once however many stand there, and tabs with them.
class Cells {
 public:
  Cells(std::string_view row, char separator) : rest_(row), separator_(separator) {}

  std::optional<std::string_view> Next();
  std::string_view Rest() const { return rest_; }  // behind the cell that Next() gave, and its separator

 private:
  std::optional<std::string_view> NextOfBlanks();
  std::string_view Quoted(std::size_t quote);

  std::string_view rest_;
  char separator_;
  bool ended_ = false;
};

// The cell of that place, from 1.
std::optional<std::string_view> CellAt(std::string_view row, int place, char separator);

// What separates the columns of these rows, which are the first of a text: ';', tab, ',' or blank. The comma
// only where it cannot belong to the numbers: "1,2.5" and "time,value", not "12,5".
char SeparatorOf(std::span<const std::string> rows);

}  // namespace quarlin
