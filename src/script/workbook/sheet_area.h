// SPDX-License-Identifier: GPL-3.0-or-later
// Rectangles of a worksheet and the addresses that name them: "A1", "$B$2:C10", "A:C", "3:5".
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quarlin::vbs::sheets {

inline constexpr std::int32_t mostRows = 1'048'576;
inline constexpr std::int32_t mostColumns = 16'384;

// A cell; both count from 1. In the order of a file: row by row.
struct Place {
  std::int32_t row = 1;
  std::int32_t column = 1;
  // The check takes the 0 that a comparison is compared with for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  auto operator<=>(const Place&) const = default;
};

// From `first` to `last`, both included; never empty, never outside the sheet.
struct Area {
  Place first;
  Place last;

  static Area Sheet() { return {{1, 1}, {mostRows, mostColumns}}; }
  static Area Of(Place cell) { return {cell, cell}; }

  std::int32_t Rows() const { return last.row - first.row + 1; }
  std::int32_t Columns() const { return last.column - first.column + 1; }
  std::int64_t Cells() const { return std::int64_t{Rows()} * Columns(); }
  bool HasWholeRows() const { return Columns() == mostColumns; }
  bool HasWholeColumns() const { return Rows() == mostRows; }
  bool Holds(Place cell) const {
    return cell.row >= first.row && cell.row <= last.row && cell.column >= first.column &&
           cell.column <= last.column;
  }
  bool Meets(const Area& other) const {
    return first.row <= other.last.row && other.first.row <= last.row && first.column <= other.last.column &&
           other.first.column <= last.column;
  }
  bool operator==(const Area&) const = default;
};

// The smallest one that holds both.
Area Around(const Area& one, const Area& other);

// Nothing where the corners are outside of a sheet.
std::optional<Area> AreaBetween(std::int64_t top, std::int64_t left, std::int64_t bottom, std::int64_t right);

// Nothing for what is no address of one rectangle.
std::optional<Area> AreaOfAddress(std::u16string_view address);

// The column of "A" to "XFD", in either case.
std::optional<std::int32_t> ColumnOfLetters(std::u16string_view letters);
std::u16string LettersOfColumn(std::int32_t column);

enum class Absolute { None = 0, Row = 1, Column = 2, Both = 3 };
std::u16string AddressOfArea(const Area& area, Absolute absolute = Absolute::Both);

}  // namespace quarlin::vbs::sheets
