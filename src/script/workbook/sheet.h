// SPDX-License-Identifier: GPL-3.0-or-later
// A worksheet in memory: what its cells hold, how they look, and how wide and high it all is.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "script/values/heap_share.h"
#include "script/values/services.h"
#include "script/values/value.h"
#include "script/workbook/sheet_area.h"
#include "script/workbook/sheet_style.h"

namespace quarlin::vbs::sheets {

// Empty, Boolean, Double, Date or String; a formula is its text with the "=".
struct Cell {
  Value value;
  StyleId style = plainStyle;
  bool isFormula = false;
};

// A whole row or column; what it has not itself comes from the column or the sheet.
struct Line {
  std::optional<StyleId> style;
  std::optional<double> size;  // width in characters, height in points
};

enum class Direction { Up, Down, Left, Right };

// Work on many cells asks every now and then whether to go on: an error that ends the script where not.
class Pace {
 public:
  explicit Pace(Services& services) : services_(services) {}
  void Step() {
    if (++steps_ % stepsBetween == 0) AskToGoOn(services_);
  }

 private:
  static constexpr std::uint32_t stepsBetween = 4096;
  Services& services_;
  std::uint32_t steps_ = 0;
};

using CellMap = std::map<Place, Cell>;  // in the order of rows
using LineMap = std::map<std::int32_t, Line>;
using ChangeStyle = std::function<void(CellStyle& style)>;

inline constexpr double usualRowHeight = 15;
inline constexpr double usualColumnWidth = 8.43;

// Cells are counted against the heap: error 7 beyond it.
class Sheet final : public Counted {
 public:
  Sheet(Ref<StyleTable> styles, std::u16string name);

  std::u16string name;
  bool isHidden = false;
  Area selection;

  // The cell, or null where there is nothing but the look of its row or column.
  const Cell* Find(Place place) const;
  const CellStyle& StyleAt(Place place) const { return styles_->At(StyleIdAt(place)); }
  const StyleTable& Styles() const { return *styles_; }

  const CellMap& Cells() const { return cells_; }
  const LineMap& Rows() const { return rows_; }
  const LineMap& Columns() const { return columns_; }
  StyleId SheetStyle() const { return sheetStyle_; }
  double RowHeight() const { return rowHeight_; }  // of rows without a height of their own, in points
  const std::vector<Area>& Merged() const { return merged_; }

  // Empty takes away what the cell holds. A date shows as one: a cell that has no number format gets that.
  void Put(Place place, const Value& value, bool isFormula = false);

  // Every cell of the area, now and later, looks as `change` makes it.
  void Restyle(const Area& area, const ChangeStyle& change, Pace& pace);

  void ClearContents(const Area& area);
  void ClearFormats(const Area& area, Pace& pace);

  // Without a number: the usual one.
  void SetWidth(const Area& columns, std::optional<double> characters);
  void SetHeight(const Area& rows, std::optional<double> points, Pace& pace);

  // Makes the columns of the area as wide as what its cells show.
  void FitColumns(const Area& area, Pace& pace);

  // The cell at the top left keeps what it holds, the others lose it. A merge that it meets ends.
  void Merge(const Area& area);
  void Unmerge(const Area& area);
  const Area* MergeAround(Place place) const;

  // The rectangle around all cells, or A1.
  Area Used() const;

  // Where Ctrl and an arrow key lead: the end of a block of filled cells, the next one, or the sheet's edge.
  Place End(Place from, Direction direction) const;

 private:
  using Restyled = std::function<StyleId(StyleId old)>;

  StyleId StyleIdAt(Place place) const;
  StyleId LineStyleAt(Place place) const;
  bool IsFilled(Place place) const;
  Cell& CellAt(Place place);
  void Empty(Place place);
  void Count(std::size_t more);
  void MakeCells(const Area& area, Pace& pace);
  void RestyleColumns(const Area& area, const Restyled& restyled, Pace& pace);
  void RestyleRows(const Area& area, const Restyled& restyled, Pace& pace);
  void RestyleAll(const Restyled& restyled);
  std::optional<Place> NextFilled(Place from, Direction direction) const;
  std::optional<Place> NextInRow(Place from, Direction direction) const;
  std::optional<Place> NextInColumn(Place from, Direction direction) const;

  Ref<StyleTable> styles_;
  CellMap cells_;
  LineMap rows_;
  LineMap columns_;
  StyleId sheetStyle_ = plainStyle;
  double rowHeight_ = usualRowHeight;
  std::vector<Area> merged_;
  HeapShare share_;
};

}  // namespace quarlin::vbs::sheets
