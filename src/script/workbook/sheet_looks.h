// SPDX-License-Identifier: GPL-3.0-or-later
// The Font, the Interior and the Borders of a range. What they tell is the look of its first cell.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "script/workbook/sheet_range.h"

namespace quarlin::vbs::sheets {

class RangeFont final : public TableObject<RangeFont> {
 public:
  explicit RangeFont(Ref<SheetRange> range) : range_(std::move(range)) {}
  static std::span<const Member<RangeFont>> Members();
  std::u16string_view TypeName() const override { return u"Font"; }
  const SheetRange& Cells() const { return *range_; }

 private:
  Ref<SheetRange> range_;
};

class RangeInterior final : public TableObject<RangeInterior> {
 public:
  explicit RangeInterior(Ref<SheetRange> range) : range_(std::move(range)) {}
  static std::span<const Member<RangeInterior>> Members();
  std::u16string_view TypeName() const override { return u"Interior"; }
  const SheetRange& Cells() const { return *range_; }

 private:
  Ref<SheetRange> range_;
};

// The lines around a range, and those between its cells.
enum class RangeBorder { Left = 7, Top, Bottom, Right, InsideVertical, InsideHorizontal };

// Error 1004 for a number that is none of these.
RangeBorder BorderOf(const Value& number);

// All lines of every cell, or one of those above.
class RangeBorders final : public TableObject<RangeBorders> {
 public:
  explicit RangeBorders(Ref<SheetRange> range, std::optional<RangeBorder> which = {})
      : range_(std::move(range)), which_(which) {}
  static std::span<const Member<RangeBorders>> Members();
  std::u16string_view TypeName() const override { return which_ ? u"Border" : u"Borders"; }
  const Ref<SheetRange>& Cells() const { return range_; }

  const Border& First() const;
  void Change(const std::function<void(Border& border)>& change) const;

 private:
  void ChangeEdge(const Area& area, Edge edge, const std::function<void(Border& border)>& change) const;

  Ref<SheetRange> range_;
  std::optional<RangeBorder> which_;
};

}  // namespace quarlin::vbs::sheets
