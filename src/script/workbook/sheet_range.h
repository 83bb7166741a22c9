// SPDX-License-Identifier: GPL-3.0-or-later
// A rectangle of cells as scripts see it: Cells(1, 2), Range("A1:C3"), Columns("B"), Rows.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "script/values/dispatch.h"
#include "script/values/services.h"
#include "script/workbook/workbook.h"

namespace quarlin::vbs::sheets {

// Where an object of a workbook stands. Nothing that holds values refers back to these objects, so they
// make no circles.
struct Home {
  Services* services;
  Ref<Desk> desk;
  Ref<Book> book;
};

// What an index picks, Count counts and For Each walks.
enum class Unit { Cell, Row, Column };

class SheetRange final : public TableObject<SheetRange> {
 public:
  SheetRange(Home home, Ref<Sheet> sheet, const Area& area, Unit unit = Unit::Cell)
      : home_(std::move(home)), sheet_(std::move(sheet)), area_(area), unit_(unit) {}
  static std::span<const Member<SheetRange>> Members();
  std::u16string_view TypeName() const override { return u"Range"; }
  std::unique_ptr<Enumerator> Enumerate() override;

  const Home& Where() const { return home_; }
  const Ref<Sheet>& On() const { return sheet_; }
  const Area& Covers() const { return area_; }
  Unit CountsBy() const { return unit_; }
  std::int64_t Count() const;

  // Another range of the same sheet.
  Value At(const Area& area, Unit unit = Unit::Cell) const;
  // The item with this number, from 1.
  Value Item(std::int64_t number) const;

  // Both mark the workbook as changed.
  Sheet& Changed() const;
  void Restyle(const ChangeStyle& change) const { Restyle(area_, change); }
  void Restyle(const Area& area, const ChangeStyle& change) const;
  const CellStyle& Style() const { return sheet_->StyleAt(area_.first); }  // of the first cell

 private:
  Home home_;
  Ref<Sheet> sheet_;
  Area area_;
  Unit unit_;
};

// The range that the arguments of Cells, Range, Rows and Columns name, counted from the first cell of
// `within`: a row and a column ("B" is one too) or a number; one or two addresses or ranges. Error 1004 for
// what lies outside of a sheet.
Value CellsOf(const SheetRange& within, Arguments arguments);
Value RangeOf(const SheetRange& within, Arguments arguments);
Value RowsOf(const SheetRange& within, Arguments arguments);
Value ColumnsOf(const SheetRange& within, Arguments arguments);

// Values of a range: one value, or an array with two dimensions from 0 on. Error 1004 for a formula, which
// nobody works out here.
Value ReadRange(const SheetRange& range);

// One value for all cells, or an array: with two dimensions row by row, with one the same for each row, or
// an array of rows. Cells that an array does not reach become empty.
void WriteRange(const SheetRange& range, const Value& value);

// WriteRange for a value that is a SheetRange.
void PutInto(const Value& range, const Value& value);

}  // namespace quarlin::vbs::sheets
