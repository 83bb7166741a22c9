// SPDX-License-Identifier: GPL-3.0-or-later
// How the cells of a workbook look: every look that occurs once, by number.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "script/values/heap_share.h"
#include "script/values/value.h"

namespace quarlin::vbs::sheets {

using ScriptColor = std::int32_t;  // &HBBGGRR, as RGB makes it

// The numbers that scripts use.
enum Alignment : std::int32_t {
  general = 1,
  fillCell = 5,
  acrossSelection = 7,
  bottom = -4107,
  center = -4108,
  distributed = -4117,
  justify = -4130,
  left = -4131,
  right = -4152,
  top = -4160,
};
enum LineStyle : std::int32_t {
  continuous = 1,
  dashDot = 4,
  dashDotDot = 5,
  dash = -4115,
  dot = -4118,
  doubleLine = -4119,
  noLine = -4142,
};
enum LineWeight : std::int32_t { hairline = 1, thin = 2, thick = 4, medium = -4138 };
enum Underline : std::int32_t { noUnderline = -4142, singleUnderline = 2, doubleUnderline = -4119 };

struct Border {
  std::int32_t style = noLine;
  std::int32_t weight = thin;
  std::optional<ScriptColor> color;
  // The check takes the 0 that a comparison is compared with for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  auto operator<=>(const Border&) const = default;
};

enum class Edge : std::uint8_t { Left, Top, Bottom, Right };
inline constexpr std::size_t edges = 4;

struct CellStyle {
  std::u16string fontName = u"Calibri";
  double fontSize = 11;  // points
  bool bold = false;
  bool italic = false;
  bool strikethrough = false;
  std::int32_t underline = noUnderline;
  std::optional<ScriptColor> fontColor;
  std::optional<ScriptColor> fill;
  std::u16string numberFormat = u"General";
  std::int32_t horizontal = general;
  std::int32_t vertical = bottom;
  bool wraps = false;
  std::array<Border, edges> borders;

  Border& At(Edge edge) { return borders[static_cast<std::size_t>(edge)]; }
  const Border& At(Edge edge) const { return borders[static_cast<std::size_t>(edge)]; }
  // NOLINTNEXTLINE(modernize-use-nullptr): likewise
  auto operator<=>(const CellStyle&) const = default;
};

using StyleId = std::uint32_t;
inline constexpr StyleId plainStyle = 0;  // CellStyle{}

class StyleTable final : public Counted {
 public:
  StyleTable();

  const CellStyle& At(StyleId id) const { return *styles_[id]; }
  std::size_t Count() const { return styles_.size(); }

  // Error 1004 when there are more looks than a file can have.
  StyleId IdOf(const CellStyle& style);

 private:
  std::map<CellStyle, StyleId> ids_;
  std::vector<const CellStyle*> styles_;  // the keys of the map
  HeapShare share_;
};

// An error with the number of this object's own errors.
ScriptError SheetError(std::u16string description);

}  // namespace quarlin::vbs::sheets
