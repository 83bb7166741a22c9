// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "script/workbook/sheet_text.h"

namespace quarlin::vbs::sheets {
namespace {

// Of a cell or a line, with its place in the map; what a text takes is counted with the text.
constexpr std::size_t bytesOfEntry = sizeof(Cell) + sizeof(Place) + 64;

// Work on each cell that is there, with a jump over what lies beside the area.
template <class Work>
void ForEachIn(CellMap& cells, const Area& area, Work work) {
  auto at = cells.lower_bound(area.first);
  while (at != cells.end() && at->first.row <= area.last.row) {
    const Place place = at->first;
    if (area.Holds(place)) {
      work((at++)->first);
    } else if (place.column < area.first.column) {
      at = cells.lower_bound({place.row, area.first.column});
    } else {
      at = cells.lower_bound({place.row + 1, area.first.column});
    }
  }
}

Place Beside(Place place, Direction direction) {
  switch (direction) {
    case Direction::Up:
      return {std::max(place.row - 1, 1), place.column};
    case Direction::Down:
      return {std::min(place.row + 1, mostRows), place.column};
    case Direction::Left:
      return {place.row, std::max(place.column - 1, 1)};
    case Direction::Right:
      return {place.row, std::min(place.column + 1, mostColumns)};
  }
  return place;
}

Place EdgeFrom(Place place, Direction direction) {
  switch (direction) {
    case Direction::Up:
      return {1, place.column};
    case Direction::Down:
      return {mostRows, place.column};
    case Direction::Left:
      return {place.row, 1};
    case Direction::Right:
      return {place.row, mostColumns};
  }
  return place;
}

std::optional<StyleId> StyleOf(const LineMap& lines, std::int32_t number) {
  const auto found = lines.find(number);
  return found == lines.end() ? std::nullopt : found->second.style;
}

}  // namespace

Sheet::Sheet(Ref<StyleTable> styles, std::u16string sheetName)
    : name(std::move(sheetName)), selection(Area::Of({})), styles_(std::move(styles)) {}

const Cell* Sheet::Find(Place place) const {
  const auto found = cells_.find(place);
  return found == cells_.end() ? nullptr : &found->second;
}

StyleId Sheet::LineStyleAt(Place place) const {
  if (const auto style = StyleOf(rows_, place.row)) return *style;
  return StyleOf(columns_, place.column).value_or(sheetStyle_);
}

StyleId Sheet::StyleIdAt(Place place) const {
  const Cell* cell = Find(place);
  return cell == nullptr ? LineStyleAt(place) : cell->style;
}

bool Sheet::IsFilled(Place place) const {
  const Cell* cell = Find(place);
  return cell != nullptr && !cell->value.IsEmpty();
}

// Before so many entries more are made.
void Sheet::Count(std::size_t more) {
  share_.Resize((cells_.size() + rows_.size() + columns_.size() + merged_.size() + more) * bytesOfEntry);
}

Cell& Sheet::CellAt(Place place) {
  const auto found = cells_.lower_bound(place);
  if (found != cells_.end() && found->first == place) return found->second;
  Count(1);
  return cells_.emplace_hint(found, place, Cell{{}, LineStyleAt(place)})->second;
}

void Sheet::Empty(Place place) {
  const auto found = cells_.find(place);
  if (found == cells_.end()) return;
  found->second.value = {};
  found->second.isFormula = false;
  if (found->second.style == LineStyleAt(place)) cells_.erase(found);
}

void Sheet::Put(Place place, const Value& value, bool isFormula) {
  if (value.IsEmpty()) {
    Empty(place);
    return;
  }
  Cell& cell = CellAt(place);
  cell.value = value;
  cell.isFormula = isFormula;
  const CellStyle& look = styles_->At(cell.style);
  if (!value.Is(Kind::Date) || look.numberFormat != CellStyle().numberFormat) return;
  CellStyle dated = look;
  dated.numberFormat = DateFormatOf(value.AsReal());
  cell.style = styles_->IdOf(dated);
}

void Sheet::Restyle(const Area& area, const ChangeStyle& change, Pace& pace) {
  std::unordered_map<StyleId, StyleId> known;
  const Restyled restyled = [&](StyleId old) {
    const auto [entry, isNew] = known.try_emplace(old, old);
    if (isNew) {
      CellStyle style = styles_->At(old);
      change(style);
      entry->second = styles_->IdOf(style);
    }
    return entry->second;
  };
  if (area.HasWholeRows() && area.HasWholeColumns()) {
    RestyleAll(restyled);
  } else if (area.HasWholeColumns()) {
    RestyleColumns(area, restyled, pace);
  } else if (area.HasWholeRows()) {
    RestyleRows(area, restyled, pace);
  } else {
    MakeCells(area, pace);
  }
  ForEachIn(cells_, area, [&](Place place) {
    Cell& cell = cells_.find(place)->second;
    cell.style = restyled(cell.style);
    pace.Step();
  });
}

void Sheet::MakeCells(const Area& area, Pace& pace) {
  for (Place place = area.first; place.row <= area.last.row; ++place.row) {
    for (place.column = area.first.column; place.column <= area.last.column; ++place.column) {
      CellAt(place);
      pace.Step();
    }
  }
}

void Sheet::RestyleAll(const Restyled& restyled) {
  for (LineMap* lines : {&rows_, &columns_}) {
    for (auto& [number, line] : *lines) {
      if (line.style) line.style = restyled(*line.style);
    }
  }
  sheetStyle_ = restyled(sheetStyle_);
}

// Where a row with a look of its own crosses the columns, both looks come together in a cell.
void Sheet::RestyleColumns(const Area& area, const Restyled& restyled, Pace& pace) {
  for (const auto& [row, line] : rows_) {
    if (line.style) MakeCells({{row, area.first.column}, {row, area.last.column}}, pace);
  }
  for (std::int32_t column = area.first.column; column <= area.last.column; ++column) {
    Count(1);
    Line& line = columns_[column];
    line.style = restyled(line.style.value_or(sheetStyle_));
  }
}

void Sheet::RestyleRows(const Area& area, const Restyled& restyled, Pace& pace) {
  for (const auto& [column, line] : columns_) {
    if (line.style) MakeCells({{area.first.row, column}, {area.last.row, column}}, pace);
  }
  for (std::int32_t row = area.first.row; row <= area.last.row; ++row) {
    Count(1);
    Line& line = rows_[row];
    line.style = restyled(line.style.value_or(sheetStyle_));
    pace.Step();
  }
}

void Sheet::ClearContents(const Area& area) {
  ForEachIn(cells_, area, [&](Place place) { Empty(place); });
  Count(0);
}

void Sheet::ClearFormats(const Area& area, Pace& pace) {
  Restyle(
      area, [](CellStyle& style) { style = CellStyle(); }, pace);
  ForEachIn(cells_, area, [&](Place place) {
    if (!IsFilled(place)) Empty(place);
  });
  Count(0);
}

void Sheet::SetWidth(const Area& columns, std::optional<double> characters) {
  for (std::int32_t column = columns.first.column; column <= columns.last.column; ++column) {
    Count(1);
    columns_[column].size = characters;
  }
}

// All rows at once are one number.
void Sheet::SetHeight(const Area& rows, std::optional<double> points, Pace& pace) {
  const auto end = rows_.upper_bound(rows.last.row);
  for (auto row = rows_.lower_bound(rows.first.row); row != end; ++row) row->second.size.reset();
  if (rows.HasWholeColumns()) {
    rowHeight_ = points.value_or(usualRowHeight);
    return;
  }
  if (!points) return;
  for (std::int32_t row = rows.first.row; row <= rows.last.row; ++row) {
    Count(1);
    rows_[row].size = points;
    pace.Step();
  }
}

void Sheet::FitColumns(const Area& area, Pace& pace) {
  std::map<std::int32_t, double> widths;
  ForEachIn(cells_, area, [&](Place place) {
    pace.Step();
    const Cell& cell = cells_.find(place)->second;
    if (cell.value.IsEmpty() || MergeAround(place) != nullptr) return;
    double& width = widths[place.column];
    width = std::max(width, WidthOf(cell, styles_->At(cell.style)));
  });
  for (const auto& [column, width] : widths) {
    SetWidth({{1, column}, {1, column}}, std::min(width, widestColumn));
  }
}

void Sheet::Merge(const Area& area) {
  Unmerge(area);
  if (area.Cells() == 1) return;
  ForEachIn(cells_, area, [&](Place place) {
    if (place != area.first) Empty(place);
  });
  Count(1);
  merged_.push_back(area);
}

void Sheet::Unmerge(const Area& area) {
  std::erase_if(merged_, [&](const Area& merged) { return merged.Meets(area); });
}

const Area* Sheet::MergeAround(Place place) const {
  const auto found = std::ranges::find_if(merged_, [&](const Area& merged) { return merged.Holds(place); });
  return found == merged_.end() ? nullptr : &*found;
}

Area Sheet::Used() const {
  if (cells_.empty()) return Area::Of({});
  Area used = Area::Of(cells_.begin()->first);
  for (const auto& [place, cell] : cells_) used = Around(used, Area::Of(place));
  return used;
}

Place Sheet::End(Place from, Direction direction) const {
  const Place next = Beside(from, direction);
  if (!IsFilled(from) || !IsFilled(next)) {
    return NextFilled(from, direction).value_or(EdgeFrom(from, direction));
  }
  Place last = from;
  for (Place at = next; at != last && IsFilled(at); at = Beside(at, direction)) last = at;
  return last;
}

std::optional<Place> Sheet::NextFilled(Place from, Direction direction) const {
  const bool isInRow = direction == Direction::Left || direction == Direction::Right;
  return isInRow ? NextInRow(from, direction) : NextInColumn(from, direction);
}

std::optional<Place> Sheet::NextInRow(Place from, Direction direction) const {
  auto at = direction == Direction::Right ? cells_.upper_bound(from) : cells_.lower_bound(from);
  while (true) {
    if (direction == Direction::Left) {
      if (at == cells_.begin()) return std::nullopt;
      --at;
    } else if (at == cells_.end()) {
      return std::nullopt;
    }
    if (at->first.row != from.row) return std::nullopt;
    if (!at->second.value.IsEmpty()) return at->first;
    if (direction == Direction::Right) ++at;
  }
}

// From one row that has cells to the next such, and there straight to the column.
std::optional<Place> Sheet::NextInColumn(Place from, Direction direction) const {
  Place at = from;
  while (true) {
    CellMap::const_iterator cell;
    if (direction == Direction::Down) {
      cell = cells_.lower_bound({at.row + 1, 1});
      if (cell == cells_.end()) return std::nullopt;
    } else {
      cell = cells_.lower_bound({at.row, 1});
      if (cell == cells_.begin()) return std::nullopt;
      --cell;
    }
    at = {cell->first.row, from.column};
    if (IsFilled(at)) return at;
  }
}

}  // namespace quarlin::vbs::sheets
