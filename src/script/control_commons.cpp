// SPDX-License-Identifier: GPL-3.0-or-later
// The members in scripts that all controls have.
#include "script/control_members.h"
#include "script/values/arguments.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;

// A number below 0 stands for one of the desktop's own colours.
constexpr std::int32_t windowBackground = -2147483643;
constexpr std::int32_t windowText = -2147483640;

template <std::int32_t desktopColor>
Value ColorValue(std::optional<Color> color) {
  return Value::Long(color.value_or(desktopColor));
}

std::optional<Color> ColorOfValue(const Value& value) {
  const std::int32_t color = vbs::ToLong(value);
  return color < 0 ? std::nullopt : std::optional<Color>(color);
}

template <std::optional<double> Placement::*side>
Value GetSide(Control& control, Arguments) {
  return Value::Double((control.Place().*side).value_or(0));
}

template <std::optional<double> Placement::*side>
void PutSide(Control& control, Arguments, const Value& value) {
  Placement place = control.Place();
  place.*side = vbs::ToDouble(value);
  control.SetPlace(place);
}

// Left, and as many of Top, Width and Height as are given.
Value Move(Control& control, Arguments arguments) {
  Placement place = control.Place();
  const std::array sides{&Placement::left, &Placement::top, &Placement::width, &Placement::height};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (vbs::Given(arguments, i) != nullptr) place.*sides.at(i) = vbs::ToDouble(arguments[i]);
  }
  control.SetPlace(place);
  return Value();
}

// The window shows every change by itself, and no control lies above another.
Value NothingToDo(Control&, Arguments) {
  return Value();
}

Value GetIndex(Control& control, Arguments) {
  if (!control.Index()) throw vbs::ScriptError(vbs::noSuchMember, u"Index");
  return Value::Long(*control.Index());
}

constexpr std::array commonRows = std::to_array<Row>({
    {u"Name", Property, 0, 0, [](Control& c, Arguments) { return TextValue(c.Name()); }},
    {u"Index", Property, 0, 0, GetIndex},
    {u"Enabled", Property, 0, 0, [](Control& c, Arguments) { return Value::Bool(c.Enabled()); },
     [](Control& c, Arguments, const Value& v) { c.SetEnabled(vbs::ToBool(v)); }},
    {u"Visible", Property, 0, 0, [](Control& c, Arguments) { return Value::Bool(c.Visible()); },
     [](Control& c, Arguments, const Value& v) { c.SetVisible(vbs::ToBool(v)); }},
    {u"ToolTipText", Property, 0, 0, [](Control& c, Arguments) { return TextValue(c.ToolTipText()); },
     [](Control& c, Arguments, const Value& v) { c.SetToolTipText(BytesOfValue(v)); }},
    {u"BackColor", Property, 0, 0,
     [](Control& c, Arguments) { return ColorValue<windowBackground>(c.BackColor()); },
     [](Control& c, Arguments, const Value& v) { c.SetBackColor(ColorOfValue(v)); }},
    {u"ForeColor", Property, 0, 0,
     [](Control& c, Arguments) { return ColorValue<windowText>(c.ForeColor()); },
     [](Control& c, Arguments, const Value& v) { c.SetForeColor(ColorOfValue(v)); }},
    {u"Left", Property, 0, 0, GetSide<&Placement::left>, PutSide<&Placement::left>},
    {u"Top", Property, 0, 0, GetSide<&Placement::top>, PutSide<&Placement::top>},
    {u"Width", Property, 0, 0, GetSide<&Placement::width>, PutSide<&Placement::width>},
    {u"Height", Property, 0, 0, GetSide<&Placement::height>, PutSide<&Placement::height>},
    {u"Tag", Property, 0, 0, [](Control& c, Arguments) { return TextValue(c.Tag()); },
     [](Control& c, Arguments, const Value& v) { c.SetTag(BytesOfValue(v)); }},
    {u"Move", Method, 1, 4, Move},
    {u"ZOrder", Method, 0, 1, NothingToDo},
    {u"Refresh", Method, 0, 0, NothingToDo},
    {u"SetFocus", Method, 0, 0,
     [](Control& c, Arguments) {
       c.SetFocus();
       return Value();
     }},
});

}  // namespace

std::span<const Row> CommonRows() {
  return commonRows;
}

}  // namespace quarlin
