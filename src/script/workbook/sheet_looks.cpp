// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet_looks.h"

#include <algorithm>
#include <array>

#include "script/values/library_object.h"

namespace quarlin::vbs::sheets {
namespace {

constexpr std::int32_t noColorIndex = -4142;
constexpr std::int32_t automaticColorIndex = -4105;

constexpr ScriptColor Rgb(std::int32_t rgb) {
  return ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
}

// The colours that have numbers, from 1 on, written as red, green, blue.
constexpr std::array<std::int32_t, 56> palette{
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF, 0x800000, 0x008000,
    0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF,
    0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF, 0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000,
    0x008080, 0x0000FF, 0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696, 0x003366, 0x339966,
    0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333,
};

std::optional<ScriptColor> ColorOfIndex(const Value& value) {
  const std::int32_t index = ToLong(value);
  if (index == noColorIndex || index == automaticColorIndex || index == 0) return std::nullopt;
  if (index < 1 || index > std::ssize(palette)) throw SheetError(u"A colour has a number from 1 to 56");
  return Rgb(palette[static_cast<std::size_t>(index - 1)]);
}

Value IndexOfColor(const std::optional<ScriptColor>& color, std::int32_t without) {
  if (!color) return Value::Long(without);
  const auto found = std::ranges::find(palette, *color, Rgb);
  return found == palette.end() ? Value::Null()
                                : Value::Long(static_cast<std::int32_t>(found - palette.begin() + 1));
}

ScriptColor ColorArgument(const Value& value) {
  constexpr std::int32_t white = 0xFFFFFF;
  const std::int32_t color = ToLong(value);
  if (color < 0 || color > white) throw SheetError(u"A colour is from 0 to &HFFFFFF, as RGB makes it");
  return color;
}

template <bool CellStyle::*flag>
Value GetFlag(RangeFont& self, Arguments) {
  return Value::Bool(self.Cells().Style().*flag);
}

template <bool CellStyle::*flag>
void PutFlag(RangeFont& self, Arguments, const Value& value) {
  const bool on = ToBool(value);
  self.Cells().Restyle([&](CellStyle& style) { style.*flag = on; });
}

Value GetUnderline(RangeFont& self, Arguments) {
  return Value::Long(self.Cells().Style().underline);
}

void PutUnderline(RangeFont& self, Arguments, const Value& value) {
  std::int32_t kind = ToLong(value);
  if (value.Is(Kind::Boolean)) kind = value.AsBool() ? singleUnderline : noUnderline;
  self.Cells().Restyle([&](CellStyle& style) { style.underline = kind; });
}

Value GetSize(RangeFont& self, Arguments) {
  return Value::Double(self.Cells().Style().fontSize);
}

void PutSize(RangeFont& self, Arguments, const Value& value) {
  constexpr double largest = 409;
  const double size = ToDouble(value);
  if (!(size >= 1 && size <= largest)) throw SheetError(u"The size of a font is from 1 to 409");
  self.Cells().Restyle([&](CellStyle& style) { style.fontSize = size; });
}

Value GetName(RangeFont& self, Arguments) {
  return Value::String(self.Cells().Style().fontName);
}

void PutName(RangeFont& self, Arguments, const Value& value) {
  const std::u16string name = ToText(value);
  if (name.empty()) throw SheetError(u"A font has a name");
  self.Cells().Restyle([&](CellStyle& style) { style.fontName = name; });
}

template <class Look, std::optional<ScriptColor> CellStyle::*part, ScriptColor otherwise>
Value GetColor(Look& self, Arguments) {
  return Value::Long((self.Cells().Style().*part).value_or(otherwise));
}

template <class Look, std::optional<ScriptColor> CellStyle::*part>
void PutColor(Look& self, Arguments, const Value& value) {
  const ScriptColor color = ColorArgument(value);
  self.Cells().Restyle([&](CellStyle& style) { style.*part = color; });
}

template <class Look, std::optional<ScriptColor> CellStyle::*part, std::int32_t without>
Value GetColorIndex(Look& self, Arguments) {
  return IndexOfColor(self.Cells().Style().*part, without);
}

template <class Look, std::optional<ScriptColor> CellStyle::*part>
void PutColorIndex(Look& self, Arguments, const Value& value) {
  const auto color = ColorOfIndex(value);
  self.Cells().Restyle([&](CellStyle& style) { style.*part = color; });
}

constexpr ScriptColor black = 0;
constexpr ScriptColor white = 0xFFFFFF;

constexpr auto fontMembers = std::to_array<Member<RangeFont>>({
    {u"Bold", MemberKind::Property, 0, 0, GetFlag<&CellStyle::bold>, PutFlag<&CellStyle::bold>},
    {u"Italic", MemberKind::Property, 0, 0, GetFlag<&CellStyle::italic>, PutFlag<&CellStyle::italic>},
    {u"Strikethrough", MemberKind::Property, 0, 0, GetFlag<&CellStyle::strikethrough>,
     PutFlag<&CellStyle::strikethrough>},
    {u"Underline", MemberKind::Property, 0, 0, GetUnderline, PutUnderline},
    {u"Size", MemberKind::Property, 0, 0, GetSize, PutSize},
    {u"Name", MemberKind::Property, 0, 0, GetName, PutName},
    {u"Color", MemberKind::Property, 0, 0, GetColor<RangeFont, &CellStyle::fontColor, black>,
     PutColor<RangeFont, &CellStyle::fontColor>},
    {u"ColorIndex", MemberKind::Property, 0, 0,
     GetColorIndex<RangeFont, &CellStyle::fontColor, automaticColorIndex>,
     PutColorIndex<RangeFont, &CellStyle::fontColor>},
});

constexpr auto interiorMembers = std::to_array<Member<RangeInterior>>({
    {u"Color", MemberKind::Property, 0, 0, GetColor<RangeInterior, &CellStyle::fill, white>,
     PutColor<RangeInterior, &CellStyle::fill>},
    {u"ColorIndex", MemberKind::Property, 0, 0, GetColorIndex<RangeInterior, &CellStyle::fill, noColorIndex>,
     PutColorIndex<RangeInterior, &CellStyle::fill>},
});

Value GetBorder(RangeBorders& self, Arguments arguments) {
  return NewObject<RangeBorders>(self.Cells(), BorderOf(arguments[0]));
}

template <std::int32_t Border::*part>
Value GetLine(RangeBorders& self, Arguments) {
  return Value::Long(self.First().*part);
}

void PutLineStyle(RangeBorders& self, Arguments, const Value& value) {
  const std::int32_t style = ToLong(value);
  self.Change([&](Border& border) { border.style = style == 0 ? std::int32_t{noLine} : style; });
}

// A weight or a colour alone makes a line, too.
void PutWeight(RangeBorders& self, Arguments, const Value& value) {
  const std::int32_t weight = ToLong(value);
  self.Change([&](Border& border) {
    border.weight = weight;
    if (border.style == noLine) border.style = continuous;
  });
}

void ColorBorder(const RangeBorders& self, const std::optional<ScriptColor>& color) {
  self.Change([&](Border& border) {
    border.color = color;
    if (border.style == noLine) border.style = continuous;
  });
}

Value GetBorderColor(RangeBorders& self, Arguments) {
  return Value::Long(self.First().color.value_or(black));
}

void PutBorderColor(RangeBorders& self, Arguments, const Value& value) {
  ColorBorder(self, ColorArgument(value));
}

Value GetBorderColorIndex(RangeBorders& self, Arguments) {
  return IndexOfColor(self.First().color, automaticColorIndex);
}

void PutBorderColorIndex(RangeBorders& self, Arguments, const Value& value) {
  ColorBorder(self, ColorOfIndex(value));
}

constexpr auto borderMembers = std::to_array<Member<RangeBorders>>({
    {u"Item", MemberKind::Indexed, 1, 1, GetBorder, nullptr, true},
    {u"LineStyle", MemberKind::Property, 0, 0, GetLine<&Border::style>, PutLineStyle},
    {u"Weight", MemberKind::Property, 0, 0, GetLine<&Border::weight>, PutWeight},
    {u"Color", MemberKind::Property, 0, 0, GetBorderColor, PutBorderColor},
    {u"ColorIndex", MemberKind::Property, 0, 0, GetBorderColorIndex, PutBorderColorIndex},
});

Edge EdgeOf(RangeBorder which) {
  switch (which) {
    case RangeBorder::Left:
    case RangeBorder::InsideVertical:
      return Edge::Left;
    case RangeBorder::Top:
    case RangeBorder::InsideHorizontal:
      return Edge::Top;
    case RangeBorder::Bottom:
      return Edge::Bottom;
    case RangeBorder::Right:
      return Edge::Right;
  }
  return Edge::Left;
}

}  // namespace

std::span<const Member<RangeFont>> RangeFont::Members() {
  return fontMembers;
}

std::span<const Member<RangeInterior>> RangeInterior::Members() {
  return interiorMembers;
}

std::span<const Member<RangeBorders>> RangeBorders::Members() {
  return borderMembers;
}

RangeBorder BorderOf(const Value& number) {
  const std::int32_t border = ToLong(number);
  const bool known = border >= static_cast<std::int32_t>(RangeBorder::Left) &&
                     border <= static_cast<std::int32_t>(RangeBorder::InsideHorizontal);
  if (!known) throw SheetError(u"A border has a number from 7 to 12");
  return static_cast<RangeBorder>(border);
}

const Border& RangeBorders::First() const {
  return range_->Style().At(EdgeOf(which_.value_or(RangeBorder::Left)));
}

void RangeBorders::ChangeEdge(const Area& area, Edge edge,
                              const std::function<void(Border& border)>& change) const {
  range_->Restyle(area, [&](CellStyle& style) { change(style.At(edge)); });
}

void RangeBorders::Change(const std::function<void(Border& border)>& change) const {
  const Area& area = range_->Covers();
  const auto [first, last] = area;
  if (!which_) {
    range_->Restyle([&](CellStyle& style) { std::ranges::for_each(style.borders, change); });
    return;
  }
  switch (*which_) {
    case RangeBorder::Left:
      return ChangeEdge({first, {last.row, first.column}}, Edge::Left, change);
    case RangeBorder::Top:
      return ChangeEdge({first, {first.row, last.column}}, Edge::Top, change);
    case RangeBorder::Bottom:
      return ChangeEdge({{last.row, first.column}, last}, Edge::Bottom, change);
    case RangeBorder::Right:
      return ChangeEdge({{first.row, last.column}, last}, Edge::Right, change);
    case RangeBorder::InsideVertical:
      if (area.Columns() > 1) ChangeEdge({{first.row, first.column + 1}, last}, Edge::Left, change);
      return;
    case RangeBorder::InsideHorizontal:
      if (area.Rows() > 1) ChangeEdge({{first.row + 1, first.column}, last}, Edge::Top, change);
  }
}

}  // namespace quarlin::vbs::sheets
