// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "script/values/array.h"
#include "script/values/library_object.h"
#include "script/workbook/sheet_looks.h"
#include "script/workbook/sheet_range.h"
#include "script/workbook/sheet_text.h"
#include "script/workbook/workbook_objects.h"

namespace quarlin::vbs::sheets {
namespace {

Value GetValue(SheetRange& self, Arguments) {
  return ReadRange(self);
}

void PutValueOf(SheetRange& self, Arguments, const Value& value) {
  WriteRange(self, value);
}

// Dates as the numbers that they are.
Value GetValue2(SheetRange& self, Arguments) {
  Value value = ReadRange(self);
  if (value.Is(Kind::Date)) return Value::Double(value.AsReal());
  if (!value.IsArray()) return value;
  for (Value& item : value.AsArray().Items()) {
    if (item.Is(Kind::Date)) item = Value::Double(item.AsReal());
  }
  return value;
}

Value GetFormula(SheetRange& self, Arguments arguments) {
  const Cell* cell = self.On()->Find(self.Covers().first);
  if (self.Covers().Cells() == 1 && cell != nullptr && cell->isFormula) return cell->value;
  return GetValue2(self, arguments);
}

// `range` as a value is what its cells hold; with an index it is one of them.
Value GetDefault(SheetRange& self, Arguments arguments) {
  if (arguments.empty()) return ReadRange(self);
  return self.CountsBy() == Unit::Cell ? CellsOf(self, arguments) : self.Item(CountOf(arguments[0]));
}

void PutDefault(SheetRange& self, Arguments indices, const Value& value) {
  if (indices.empty()) {
    WriteRange(self, value);
  } else {
    PutInto(GetDefault(self, indices), value);
  }
}

Value GetItem(SheetRange& self, Arguments arguments) {
  return GetDefault(self, arguments);
}

Value GetCells(SheetRange& self, Arguments arguments) {
  return CellsOf(self, arguments);
}

Value GetRange(SheetRange& self, Arguments arguments) {
  return RangeOf(self, arguments);
}

Value GetRows(SheetRange& self, Arguments arguments) {
  return RowsOf(self, arguments);
}

Value GetColumns(SheetRange& self, Arguments arguments) {
  return ColumnsOf(self, arguments);
}

template <Value (*part)(const SheetRange&, Arguments)>
void PutPart(SheetRange& self, Arguments indices, const Value& value) {
  PutInto(part(self, indices), value);
}

Area Moved(const Area& area, std::int64_t down, std::int64_t aside) {
  const auto moved = AreaBetween(area.first.row + down, area.first.column + aside, area.last.row + down,
                                 area.last.column + aside);
  if (!moved) throw SheetError(u"That is beyond the edge of the sheet");
  return *moved;
}

Value GetOffset(SheetRange& self, Arguments arguments) {
  return self.At(Moved(self.Covers(), CountOr(arguments, 0, 0), CountOr(arguments, 1, 0)));
}

Value GetResize(SheetRange& self, Arguments arguments) {
  const Area& area = self.Covers();
  const std::int64_t rows = CountOr(arguments, 0, area.Rows());
  const std::int64_t columns = CountOr(arguments, 1, area.Columns());
  const auto sized = AreaBetween(area.first.row, area.first.column, area.first.row + rows - 1,
                                 area.first.column + columns - 1);
  if (!sized) throw SheetError(u"No sheet has a range of that size");
  return self.At(*sized);
}

Value GetEntireRow(SheetRange& self, Arguments) {
  const Area& area = self.Covers();
  return self.At({{area.first.row, 1}, {area.last.row, mostColumns}}, Unit::Row);
}

Value GetEntireColumn(SheetRange& self, Arguments) {
  const Area& area = self.Covers();
  return self.At({{1, area.first.column}, {mostRows, area.last.column}}, Unit::Column);
}

Value GetAddress(SheetRange& self, Arguments arguments) {
  int absolute = 0;
  if (FlagOr(arguments, 0, true)) absolute |= static_cast<int>(Absolute::Row);
  if (FlagOr(arguments, 1, true)) absolute |= static_cast<int>(Absolute::Column);
  return Value::String(AddressOfArea(self.Covers(), static_cast<Absolute>(absolute)));
}

Value GetRow(SheetRange& self, Arguments) {
  return Value::Long(self.Covers().first.row);
}

Value GetColumn(SheetRange& self, Arguments) {
  return Value::Long(self.Covers().first.column);
}

Value GetCount(SheetRange& self, Arguments) {
  return CountValue(static_cast<std::size_t>(self.Count()));
}

Direction DirectionOf(const Value& value) {
  switch (ToLong(value)) {
    case -4162:
    case 3:
      return Direction::Up;
    case -4121:
    case 4:
      return Direction::Down;
    case -4159:
    case 1:
      return Direction::Left;
    case -4161:
    case 2:
      return Direction::Right;
    default:
      throw ScriptError(invalidCall);
  }
}

Value GetEnd(SheetRange& self, Arguments arguments) {
  return self.At(Area::Of(self.On()->End(self.Covers().first, DirectionOf(arguments[0]))));
}

template <class Look>
Value GetLook(SheetRange& self, Arguments) {
  return NewObject<Look>(Ref<SheetRange>(&self));
}

Value GetBorders(SheetRange& self, Arguments arguments) {
  const Value* edge = Given(arguments, 0);
  if (edge == nullptr) return NewObject<RangeBorders>(Ref<SheetRange>(&self));
  return NewObject<RangeBorders>(Ref<SheetRange>(&self), BorderOf(*edge));
}

Value GetNumberFormat(SheetRange& self, Arguments) {
  return Value::String(self.Style().numberFormat);
}

void PutNumberFormat(SheetRange& self, Arguments, const Value& value) {
  const std::u16string format = ToText(value);
  self.Restyle([&](CellStyle& style) { style.numberFormat = format; });
}

template <std::int32_t CellStyle::*alignment>
Value GetAlignment(SheetRange& self, Arguments) {
  return Value::Long(self.Style().*alignment);
}

template <std::int32_t CellStyle::*alignment>
void PutAlignment(SheetRange& self, Arguments, const Value& value) {
  const std::int32_t number = ToLong(value);
  self.Restyle([&](CellStyle& style) { style.*alignment = number; });
}

Value GetWrapText(SheetRange& self, Arguments) {
  return Value::Bool(self.Style().wraps);
}

void PutWrapText(SheetRange& self, Arguments, const Value& value) {
  const bool wraps = ToBool(value);
  self.Restyle([&](CellStyle& style) { style.wraps = wraps; });
}

Value SizeOf(const LineMap& lines, std::int32_t number, double otherwise) {
  const auto found = lines.find(number);
  return Value::Double(found == lines.end() ? otherwise : found->second.size.value_or(otherwise));
}

double CheckedSize(const Value& value, double most, std::u16string_view what) {
  const double size = ToDouble(value);
  if (size >= 0 && size <= most) return size;
  throw SheetError(std::u16string(what) + u" is from 0 to " + TextOfDouble(most));
}

Value GetColumnWidth(SheetRange& self, Arguments) {
  return SizeOf(self.On()->Columns(), self.Covers().first.column, usualColumnWidth);
}

void PutColumnWidth(SheetRange& self, Arguments, const Value& value) {
  self.Changed().SetWidth(self.Covers(), CheckedSize(value, widestColumn, u"The width of a column"));
}

Value GetRowHeight(SheetRange& self, Arguments) {
  return SizeOf(self.On()->Rows(), self.Covers().first.row, self.On()->RowHeight());
}

void PutRowHeight(SheetRange& self, Arguments, const Value& value) {
  constexpr double highest = 409;
  Pace pace(*self.Where().services);
  self.Changed().SetHeight(self.Covers(), CheckedSize(value, highest, u"The height of a row"), pace);
}

Value AutoFit(SheetRange& self, Arguments) {
  const Area& area = self.Covers();
  Sheet& sheet = self.Changed();
  Pace pace(*self.Where().services);
  if (self.CountsBy() == Unit::Row) {
    sheet.SetHeight(area, std::nullopt, pace);
  } else {
    sheet.FitColumns(area, pace);
  }
  return {};
}

Value Merge(SheetRange& self, Arguments arguments) {
  const Area& area = self.Covers();
  const bool rowByRow = FlagOr(arguments, 0, false);
  if (!rowByRow) {
    self.Changed().Merge(area);
    return {};
  }
  for (std::int32_t row = area.first.row; row <= area.last.row; ++row) {
    self.Changed().Merge({{row, area.first.column}, {row, area.last.column}});
  }
  return {};
}

Value UnMerge(SheetRange& self, Arguments) {
  self.Changed().Unmerge(self.Covers());
  return {};
}

Value GetMergeCells(SheetRange& self, Arguments) {
  return Value::Bool(self.On()->MergeAround(self.Covers().first) != nullptr);
}

void PutMergeCells(SheetRange& self, Arguments, const Value& value) {
  if (ToBool(value)) {
    self.Changed().Merge(self.Covers());
  } else {
    self.Changed().Unmerge(self.Covers());
  }
}

Value ClearContents(SheetRange& self, Arguments) {
  self.Changed().ClearContents(self.Covers());
  return {};
}

Value ClearFormats(SheetRange& self, Arguments) {
  Pace pace(*self.Where().services);
  self.Changed().ClearFormats(self.Covers(), pace);
  return {};
}

Value Clear(SheetRange& self, Arguments arguments) {
  self.Changed().Unmerge(self.Covers());
  ClearContents(self, arguments);
  return ClearFormats(self, arguments);
}

Value Select(SheetRange& self, Arguments) {
  self.On()->selection = self.Covers();
  return Value::Bool(true);
}

Value GetWorksheet(SheetRange& self, Arguments) {
  return NewObject<Worksheet>(self.Where(), self.On());
}

constexpr auto members = std::to_array<Member<SheetRange>>({
    {u"Value", MemberKind::Property, 0, 0, GetValue, PutValueOf},
    {u"_Default", MemberKind::Indexed, 0, 2, GetDefault, PutDefault, true},
    {u"Item", MemberKind::Indexed, 1, 2, GetItem, PutDefault},
    {u"Value2", MemberKind::Property, 0, 0, GetValue2, PutValueOf},
    {u"Formula", MemberKind::Property, 0, 0, GetFormula, PutValueOf},
    {u"Cells", MemberKind::Indexed, 0, 2, GetCells, PutPart<CellsOf>},
    {u"Range", MemberKind::Indexed, 1, 2, GetRange, PutPart<RangeOf>},
    {u"Rows", MemberKind::Indexed, 0, 1, GetRows, PutPart<RowsOf>},
    {u"Columns", MemberKind::Indexed, 0, 1, GetColumns, PutPart<ColumnsOf>},
    {u"Offset", MemberKind::Indexed, 0, 2, GetOffset,
     [](SheetRange& self, Arguments indices, const Value& value) {
       PutInto(GetOffset(self, indices), value);
     }},
    {u"Resize", MemberKind::Indexed, 0, 2, GetResize,
     [](SheetRange& self, Arguments indices, const Value& value) {
       PutInto(GetResize(self, indices), value);
     }},
    {u"EntireRow", MemberKind::Property, 0, 0, GetEntireRow},
    {u"EntireColumn", MemberKind::Property, 0, 0, GetEntireColumn},
    {u"Address", MemberKind::Indexed, 0, 2, GetAddress},
    {u"Row", MemberKind::Property, 0, 0, GetRow},
    {u"Column", MemberKind::Property, 0, 0, GetColumn},
    {u"Count", MemberKind::Property, 0, 0, GetCount},
    {u"End", MemberKind::Indexed, 1, 1, GetEnd},
    {u"Font", MemberKind::Property, 0, 0, GetLook<RangeFont>},
    {u"Interior", MemberKind::Property, 0, 0, GetLook<RangeInterior>},
    {u"Borders", MemberKind::Indexed, 0, 1, GetBorders},
    {u"NumberFormat", MemberKind::Property, 0, 0, GetNumberFormat, PutNumberFormat},
    {u"HorizontalAlignment", MemberKind::Property, 0, 0, GetAlignment<&CellStyle::horizontal>,
     PutAlignment<&CellStyle::horizontal>},
    {u"VerticalAlignment", MemberKind::Property, 0, 0, GetAlignment<&CellStyle::vertical>,
     PutAlignment<&CellStyle::vertical>},
    {u"WrapText", MemberKind::Property, 0, 0, GetWrapText, PutWrapText},
    {u"ColumnWidth", MemberKind::Property, 0, 0, GetColumnWidth, PutColumnWidth},
    {u"RowHeight", MemberKind::Property, 0, 0, GetRowHeight, PutRowHeight},
    {u"AutoFit", MemberKind::Method, 0, 0, AutoFit},
    {u"Merge", MemberKind::Method, 0, 1, Merge},
    {u"UnMerge", MemberKind::Method, 0, 0, UnMerge},
    {u"MergeCells", MemberKind::Property, 0, 0, GetMergeCells, PutMergeCells},
    {u"Clear", MemberKind::Method, 0, 0, Clear},
    {u"ClearContents", MemberKind::Method, 0, 0, ClearContents},
    {u"ClearFormats", MemberKind::Method, 0, 0, ClearFormats},
    {u"Select", MemberKind::Method, 0, 0, Select},
    {u"Activate", MemberKind::Method, 0, 0, Select},
    {u"Worksheet", MemberKind::Property, 0, 0, GetWorksheet},
    {u"Parent", MemberKind::Property, 0, 0, GetWorksheet},
});

}  // namespace

std::span<const Member<SheetRange>> SheetRange::Members() {
  return members;
}

}  // namespace quarlin::vbs::sheets
