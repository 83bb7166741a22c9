// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet_range.h"

#include <algorithm>
#include <array>

#include "script/values/array.h"
#include "script/values/library_object.h"

namespace quarlin::vbs::sheets {
namespace {

ScriptError OutsideOfSheet() {
  return SheetError(u"There is no such cell: a sheet has 1048576 rows and 16384 columns");
}

Area Checked(const std::optional<Area>& area) {
  if (!area) throw OutsideOfSheet();
  return *area;
}

class RangeWalk final : public Enumerator {
 public:
  explicit RangeWalk(Ref<SheetRange> range) : range_(std::move(range)) {}
  std::optional<Value> Next() override {
    if (next_ == range_->Count()) return std::nullopt;
    return range_->Item(++next_);
  }

 private:
  Ref<SheetRange> range_;
  std::int64_t next_ = 0;
};

std::int64_t ColumnArgument(const Value& value) {
  if (!value.IsString()) return CountOf(value);
  if (const auto column = ColumnOfLetters(value.AsText())) return *column;
  return CountOf(value);
}

// Of a range or an address, moved so that "A1" is the first cell of `within`.
Area AreaOf(const SheetRange& within, const Value& argument) {
  if (argument.IsObject()) {
    const auto* range = dynamic_cast<const SheetRange*>(argument.AsObject());
    if (range != nullptr) return range->Covers();
  }
  const std::u16string address = ToText(argument);
  const auto area = AreaOfAddress(address);
  if (!area) throw SheetError(u"'" + address + u"' is no address of cells, such as A1:C3");
  const Place& from = within.Covers().first;
  const bool moves = from != Place{};
  if (!moves) return *area;
  return Checked(AreaBetween(area->first.row + from.row - 1, area->first.column + from.column - 1,
                             area->last.row + from.row - 1, area->last.column + from.column - 1));
}

// A number or "2:4" for rows, a number, letters or "B:D" for columns.
struct Span {
  std::int64_t first;
  std::int64_t last;
};

Span RowSpan(const Value& argument) {
  if (argument.IsString()) {
    if (const auto area = AreaOfAddress(argument.AsText())) return {area->first.row, area->last.row};
  }
  const std::int64_t row = CountOf(argument);
  return {row, row};
}

Span ColumnSpan(const Value& argument) {
  if (argument.IsString()) {
    if (const auto area = AreaOfAddress(argument.AsText())) return {area->first.column, area->last.column};
  }
  const std::int64_t column = ColumnArgument(argument);
  return {column, column};
}

Value ValueOf(const Sheet& sheet, Place place) {
  const Cell* cell = sheet.Find(place);
  if (cell == nullptr) return {};
  if (cell->isFormula) {
    throw SheetError(
        u"The value of a formula is worked out by the program that opens the workbook, not here");
  }
  return cell->value;
}

// An array's item for a row and a column of the range, from 0; nothing where it has none.
std::optional<Value> ItemOf(const ArrayBody& array, std::size_t row, std::size_t column) {
  const auto& items = array.Items();
  const auto rows = static_cast<std::size_t>(array.UpperBound(0)) + 1;
  if (array.Dimensions() == 2) {
    const auto columns = static_cast<std::size_t>(array.UpperBound(1)) + 1;
    return row < rows && column < columns ? std::optional(items[column * rows + row]) : std::nullopt;
  }
  const bool isRowOfRows = rows > 0 && items.front().IsArray();
  if (!isRowOfRows) return column < rows ? std::optional(items[column]) : std::nullopt;
  if (row >= rows || !items[row].IsArray()) return std::nullopt;
  const auto& inner = items[row].AsArray().Items();
  return column < inner.size() ? std::optional(inner[column]) : std::nullopt;
}

// How many rows and columns of the range an array reaches.
Place ReachOf(const ArrayBody& array, const Area& area) {
  const std::int32_t first = array.UpperBound(0) + 1;
  if (array.Dimensions() == 2) {
    return {std::min(first, area.Rows()), std::min(array.UpperBound(1) + 1, area.Columns())};
  }
  const auto& items = array.Items();
  if (items.empty() || !items.front().IsArray()) return {area.Rows(), std::min(first, area.Columns())};
  std::size_t widest = 0;
  for (const Value& item : items) {
    if (item.IsArray()) widest = std::max(widest, item.AsArray().Items().size());
  }
  const auto columns = std::min<std::size_t>(widest, static_cast<std::size_t>(area.Columns()));
  return {std::min(first, area.Rows()), static_cast<std::int32_t>(columns)};
}

void WriteArray(const SheetRange& range, const ArrayBody& array) {
  const std::size_t dimensions = array.Dimensions();
  if (dimensions == 0) throw ScriptError(subscriptOutOfRange);
  if (dimensions > 2) throw ScriptError(typeMismatch);
  Sheet& sheet = range.Changed();
  Pace pace(*range.Where().services);
  const Area& area = range.Covers();
  const Place reach = ReachOf(array, area);
  if (reach != Place{area.Rows(), area.Columns()}) sheet.ClearContents(area);
  for (std::int32_t row = 0; row < reach.row; ++row) {
    for (std::int32_t column = 0; column < reach.column; ++column) {
      const auto item = ItemOf(array, static_cast<std::size_t>(row), static_cast<std::size_t>(column));
      PutValue(sheet, {area.first.row + row, area.first.column + column}, item.value_or(Value()));
      pace.Step();
    }
  }
}

}  // namespace

std::int64_t SheetRange::Count() const {
  if (unit_ == Unit::Row) return area_.Rows();
  return unit_ == Unit::Column ? area_.Columns() : area_.Cells();
}

Value SheetRange::At(const Area& area, Unit unit) const {
  return NewObject<SheetRange>(home_, sheet_, area, unit);
}

// An index may point behind the range, as long as it stays on the sheet.
Value SheetRange::Item(std::int64_t number) const {
  const Place& from = area_.first;
  if (unit_ == Unit::Row) {
    const std::int64_t row = from.row + number - 1;
    return At(Checked(AreaBetween(row, from.column, row, area_.last.column)), Unit::Row);
  }
  if (unit_ == Unit::Column) {
    const std::int64_t column = from.column + number - 1;
    return At(Checked(AreaBetween(from.row, column, area_.last.row, column)), Unit::Column);
  }
  if (number < 1) throw OutsideOfSheet();
  const std::int64_t row = from.row + (number - 1) / area_.Columns();
  const std::int64_t column = from.column + (number - 1) % area_.Columns();
  return At(Checked(AreaBetween(row, column, row, column)));
}

std::unique_ptr<Enumerator> SheetRange::Enumerate() {
  return std::make_unique<RangeWalk>(this);
}

Sheet& SheetRange::Changed() const {
  home_.book->isSaved = false;
  return *sheet_;
}

void SheetRange::Restyle(const Area& area, const ChangeStyle& change) const {
  Pace pace(*home_.services);
  Changed().Restyle(area, change, pace);
}

Value CellsOf(const SheetRange& within, Arguments arguments) {
  const Value* row = Given(arguments, 0);
  const Value* column = Given(arguments, 1);
  if (row == nullptr && column == nullptr) return within.At(within.Covers());
  if (column == nullptr) return within.Item(CountOf(*row));
  if (row == nullptr) throw ScriptError(wrongArgumentCount);
  const Place& from = within.Covers().first;
  const std::int64_t top = from.row + std::int64_t{CountOf(*row)} - 1;
  const std::int64_t side = from.column + ColumnArgument(*column) - 1;
  return within.At(Checked(AreaBetween(top, side, top, side)));
}

Value RangeOf(const SheetRange& within, Arguments arguments) {
  const Area first = AreaOf(within, arguments[0]);
  const Value* other = Given(arguments, 1);
  return within.At(other == nullptr ? first : Around(first, AreaOf(within, *other)));
}

Value RowsOf(const SheetRange& within, Arguments arguments) {
  const Area& area = within.Covers();
  const Value* given = Given(arguments, 0);
  if (given == nullptr) return within.At(area, Unit::Row);
  const Span rows = RowSpan(*given);
  return within.At(Checked(AreaBetween(area.first.row + rows.first - 1, area.first.column,
                                       area.first.row + rows.last - 1, area.last.column)),
                   Unit::Row);
}

Value ColumnsOf(const SheetRange& within, Arguments arguments) {
  const Area& area = within.Covers();
  const Value* given = Given(arguments, 0);
  if (given == nullptr) return within.At(area, Unit::Column);
  const Span columns = ColumnSpan(*given);
  return within.At(Checked(AreaBetween(area.first.row, area.first.column + columns.first - 1, area.last.row,
                                       area.first.column + columns.last - 1)),
                   Unit::Column);
}

Value ReadRange(const SheetRange& range) {
  const Area& area = range.Covers();
  if (area.Cells() == 1) return ValueOf(*range.On(), area.first);
  Pace pace(*range.Where().services);
  const ArrayRef array = ArrayBody::Make(std::array{area.Rows() - 1, area.Columns() - 1});
  auto item = array->Items().begin();  // the first index runs fastest
  for (std::int32_t column = area.first.column; column <= area.last.column; ++column) {
    for (std::int32_t row = area.first.row; row <= area.last.row; ++row) {
      *item++ = ValueOf(*range.On(), {row, column});
      pace.Step();
    }
  }
  return Value::Array(array);
}

void WriteRange(const SheetRange& range, const Value& given) {
  const Value value = given.IsObject() ? Plain(given) : given;
  if (value.IsArray()) {
    WriteArray(range, value.AsArray());
    return;
  }
  Sheet& sheet = range.Changed();
  const Area& area = range.Covers();
  if (value.IsEmpty() || value.IsNull()) {
    sheet.ClearContents(area);
    return;
  }
  Pace pace(*range.Where().services);
  for (Place place = area.first; place.row <= area.last.row; ++place.row) {
    for (place.column = area.first.column; place.column <= area.last.column; ++place.column) {
      PutValue(sheet, place, value);
      pace.Step();
    }
  }
}

void PutInto(const Value& range, const Value& value) {
  WriteRange(static_cast<const SheetRange&>(*range.AsObject()), value);
}

}  // namespace quarlin::vbs::sheets
