// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/font_object.h"

#include <array>

#include "script/control_members.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;

constexpr double usualSize = 9;  // points, told until another one is set
constexpr double largestSize = 200;

Control& ControlOf(Control& control) {
  return control;
}
Control& ControlOf(FontObject& font) {
  return font.Owner();
}

// `Self` is the control or its font.

template <class Self>
Value GetName(Self& self, Arguments) {
  return TextValue(ControlOf(self).Look().font.name.value_or(""));
}

template <class Self>
void PutName(Self& self, Arguments, const Value& value) {
  Looks look = ControlOf(self).Look();
  look.font.name = BytesOfValue(value);
  ControlOf(self).SetLook(look);
}

template <class Self>
Value GetSize(Self& self, Arguments) {
  return Value::Double(ControlOf(self).Look().font.size.value_or(usualSize));
}

template <class Self>
void PutSize(Self& self, Arguments, const Value& value) {
  const double size = vbs::ToDouble(value);
  if (!(size > 0 && size <= largestSize)) throw vbs::ScriptError(vbs::invalidCall);
  Looks look = ControlOf(self).Look();
  look.font.size = size;
  ControlOf(self).SetLook(look);
}

template <std::optional<bool> Lettering::*flag, class Self>
Value GetFlag(Self& self, Arguments) {
  return Value::Bool((ControlOf(self).Look().font.*flag).value_or(false));
}

template <std::optional<bool> Lettering::*flag, class Self>
void PutFlag(Self& self, Arguments, const Value& value) {
  Looks look = ControlOf(self).Look();
  look.font.*flag = vbs::ToBool(value);
  ControlOf(self).SetLook(look);
}

// Shared by two names of the same part: that of the control's member and that of the font's.
template <class Line, class Self>
constexpr Line SizeLine(std::u16string_view name) {
  return {name, Property, 0, 0, GetSize<Self>, PutSize<Self>};
}
template <class Line, class Self, std::optional<bool> Lettering::*flag>
constexpr Line FlagLine(std::u16string_view name) {
  return {name, Property, 0, 0, GetFlag<flag, Self>, PutFlag<flag, Self>};
}

using FontRow = vbs::Member<FontObject>;

constexpr std::array fontRows = std::to_array<Row>({
    {u"Font", Property, 0, 0, [](Control& c, Arguments) { return Value::Object(new FontObject(c)); },
     PutName<Control>},
    {u"FontName", Property, 0, 0, GetName<Control>, PutName<Control>},
    SizeLine<Row, Control>(u"FontSize"),
    FlagLine<Row, Control, &Lettering::bold>(u"FontBold"),
    FlagLine<Row, Control, &Lettering::italic>(u"FontItalic"),
    FlagLine<Row, Control, &Lettering::underline>(u"FontUnderline"),
    FlagLine<Row, Control, &Lettering::strikethrough>(u"FontStrikethru"),
});

}  // namespace

std::span<const FontRow> FontObject::Members() {
  static constexpr std::array members = std::to_array<FontRow>({
      {u"Name", Property, 0, 0, GetName<FontObject>, PutName<FontObject>, true},
      SizeLine<FontRow, FontObject>(u"Size"),
      FlagLine<FontRow, FontObject, &Lettering::bold>(u"Bold"),
      FlagLine<FontRow, FontObject, &Lettering::italic>(u"Italic"),
      FlagLine<FontRow, FontObject, &Lettering::underline>(u"Underline"),
      FlagLine<FontRow, FontObject, &Lettering::strikethrough>(u"Strikethrough"),
  });
  return members;
}

std::span<const Row> FontRows() {
  return fontRows;
}

}  // namespace quarlin
