// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet_area.h"

#include <algorithm>
#include <string>

#include "script/values/conversions.h"

namespace quarlin::vbs::sheets {
namespace {

constexpr int letters = 26;

// One side of an address: a cell, a whole column, or a whole row.
struct Corner {
  std::optional<std::int32_t> row;
  std::optional<std::int32_t> column;
};

bool IsLetter(char16_t unit) {
  return UpperOf(unit) >= u'A' && UpperOf(unit) <= u'Z';
}

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

std::u16string_view TakeWhile(std::u16string_view& text, bool (*belongs)(char16_t)) {
  const auto end = std::find_if_not(text.begin(), text.end(), belongs);
  const auto count = static_cast<std::size_t>(end - text.begin());
  const std::u16string_view taken = text.substr(0, count);
  text.remove_prefix(count);
  return taken;
}

void SkipDollar(std::u16string_view& text) {
  if (text.starts_with(u'$')) text.remove_prefix(1);
}

std::optional<std::int32_t> RowOfDigits(std::u16string_view digits) {
  constexpr std::size_t mostDigits = 7;
  if (digits.empty() || digits.size() > mostDigits) return std::nullopt;
  std::int32_t row = 0;
  for (const char16_t digit : digits) row = row * 10 + (digit - u'0');
  return row >= 1 && row <= mostRows ? std::optional(row) : std::nullopt;
}

std::optional<Corner> CornerOf(std::u16string_view text) {
  Corner corner;
  SkipDollar(text);
  if (const auto column = TakeWhile(text, IsLetter); !column.empty()) {
    corner.column = ColumnOfLetters(column);
    if (!corner.column) return std::nullopt;
    if (text.empty()) return corner;
    SkipDollar(text);
  }
  corner.row = RowOfDigits(TakeWhile(text, IsDigit));
  return corner.row && text.empty() ? std::optional(corner) : std::nullopt;
}

bool SameKind(const Corner& one, const Corner& other) {
  return one.row.has_value() == other.row.has_value() && one.column.has_value() == other.column.has_value();
}

}  // namespace

Area Around(const Area& one, const Area& other) {
  return {{std::min(one.first.row, other.first.row), std::min(one.first.column, other.first.column)},
          {std::max(one.last.row, other.last.row), std::max(one.last.column, other.last.column)}};
}

std::optional<Area> AreaBetween(std::int64_t top, std::int64_t left, std::int64_t bottom,
                                std::int64_t right) {
  const bool fits =
      top >= 1 && left >= 1 && bottom >= top && right >= left && bottom <= mostRows && right <= mostColumns;
  if (!fits) return std::nullopt;
  return Area{{static_cast<std::int32_t>(top), static_cast<std::int32_t>(left)},
              {static_cast<std::int32_t>(bottom), static_cast<std::int32_t>(right)}};
}

std::optional<Area> AreaOfAddress(std::u16string_view address) {
  const std::size_t colon = address.find(u':');
  const auto first = CornerOf(address.substr(0, colon));
  const auto last = colon == address.npos ? first : CornerOf(address.substr(colon + 1));
  if (!first || !last || !SameKind(*first, *last)) return std::nullopt;
  const bool isCell = first->row && first->column;
  if (colon == address.npos && !isCell) return std::nullopt;
  const Place one{first->row.value_or(1), first->column.value_or(1)};
  const Place other{last->row.value_or(mostRows), last->column.value_or(mostColumns)};
  return Around(Area::Of(one), Area::Of(other));
}

std::optional<std::int32_t> ColumnOfLetters(std::u16string_view text) {
  constexpr std::size_t mostLetters = 3;
  if (text.empty() || text.size() > mostLetters) return std::nullopt;
  std::int32_t column = 0;
  for (const char16_t unit : text) {
    if (!IsLetter(unit)) return std::nullopt;
    column = column * letters + (UpperOf(unit) - u'A' + 1);
  }
  return column <= mostColumns ? std::optional(column) : std::nullopt;
}

std::u16string LettersOfColumn(std::int32_t column) {
  std::u16string text;
  for (; column > 0; column = (column - 1) / letters) {
    text.insert(text.begin(), static_cast<char16_t>(u'A' + (column - 1) % letters));
  }
  return text;
}

std::u16string AddressOfArea(const Area& area, Absolute absolute) {
  const auto has = [absolute](Absolute part) {
    return (static_cast<int>(absolute) & static_cast<int>(part)) != 0;
  };
  const std::u16string beforeRow = has(Absolute::Row) ? u"$" : u"";
  const std::u16string beforeColumn = has(Absolute::Column) ? u"$" : u"";
  const auto corner = [&](Place place) {
    std::u16string text;
    if (area.HasWholeRows() || !area.HasWholeColumns()) {
      text = beforeRow + Utf16Of(std::to_string(place.row));
    }
    if (!area.HasWholeRows()) text = beforeColumn + LettersOfColumn(place.column) + text;
    return text;
  };
  const bool isOneCell = area.first == area.last;
  return isOneCell ? corner(area.first) : corner(area.first) + u":" + corner(area.last);
}

}  // namespace quarlin::vbs::sheets
