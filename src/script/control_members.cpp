// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/control_members.h"

#include <algorithm>
#include <array>

#include "controls/controls.h"
#include "controls/timer.h"
#include "display/display_controls.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;
using Table = ControlObject::Table;

Value Number(int number) {
  return Value::Long(number);
}

// One kind each.

// True, as the language has it, is -1; a check box counts as checked with any number but 0 and 2.
void PutCheck(Control& control, Arguments, const Value& value) {
  As<CheckBox>(control).SetValue(vbs::ToLong(value));
}

Value Press(Control& control, Arguments) {
  As<CommandButton>(control).Click();
  return Value();
}

void PutPressed(Control& control, Arguments, const Value& value) {
  if (vbs::ToBool(value)) As<CommandButton>(control).Click();
}

Value GetFill(Control& control, Arguments) {
  return Value::Long(As<Shape>(control).FillColor());
}

void PutFill(Control& control, Arguments, const Value& value) {
  As<Shape>(control).SetFillColor(vbs::ToLong(value));
}

// One of a few kinds, numbered from 0.
int StyleOf(const Value& value, int most) {
  const std::int32_t style = vbs::ToLong(value);
  if (style < 0 || style > most) throw vbs::ScriptError(vbs::invalidCall);
  return style;
}

void PutFillStyle(Control& control, Arguments, const Value& value) {
  Looks look = control.Look();
  look.fillStyle = StyleOf(value, 7);
  control.SetLook(look);
}

void PutBorderColor(Control& control, Arguments, const Value& value) {
  Looks look = control.Look();
  const std::int32_t color = vbs::ToLong(value);
  look.borderColor = color < 0 ? std::nullopt : std::optional(color);
  control.SetLook(look);
}

constexpr std::array<Row, 2> checkBoxRows{{
    {u"Value", Property, 0, 0, [](Control& c, Arguments) { return Number(As<CheckBox>(c).Value()); },
     PutCheck},
    captionRow<CheckBox>,
}};
constexpr std::array<Row, 2> optionRows{{
    {u"Value", Property, 0, 0, [](Control& c, Arguments) { return Value::Bool(As<OptionButton>(c).Value()); },
     [](Control& c, Arguments, const Value& v) { As<OptionButton>(c).SetValue(vbs::ToBool(v)); }},
    captionRow<OptionButton>,
}};
constexpr std::array<Row, 3> commandRows{{
    {u"Value", Property, 0, 0, [](Control&, Arguments) { return Value::Bool(false); }, PutPressed},
    {u"Click", Method, 0, 0, Press},
    captionRow<CommandButton>,
}};
constexpr std::array<Row, 2> labelRows{captionRow<Label>, borderStyleRow};
constexpr std::array<Row, 2> frameRows{captionRow<Frame>, borderStyleRow};
constexpr std::array<Row, 5> shapeRows{{
    {u"FillColor", Property, 0, 0, GetFill, PutFill},
    {u"BackColor", Property, 0, 0, GetFill, PutFill},  // a lamp has one colour
    {u"FillStyle", Property, 0, 0, [](Control& c, Arguments) { return Number(c.Look().fillStyle); },
     PutFillStyle},
    {u"BorderColor", Property, 0, 0,
     [](Control& c, Arguments) { return Number(c.Look().borderColor.value_or(colors::black)); },
     PutBorderColor},
    borderStyleRow,
}};
constexpr std::array<Row, 3> scrollRows{{
    {u"Value", Property, 0, 0, [](Control& c, Arguments) { return Number(As<ScrollBar>(c).Value()); },
     [](Control& c, Arguments, const Value& v) { As<ScrollBar>(c).SetValue(vbs::ToLong(v)); }},
    {u"Min", Property, 0, 0, [](Control& c, Arguments) { return Number(As<ScrollBar>(c).Min()); },
     [](Control& c, Arguments, const Value& v) {
       As<ScrollBar>(c).SetRange(vbs::ToLong(v), As<ScrollBar>(c).Max());
     }},
    {u"Max", Property, 0, 0, [](Control& c, Arguments) { return Number(As<ScrollBar>(c).Max()); },
     [](Control& c, Arguments, const Value& v) {
       As<ScrollBar>(c).SetRange(As<ScrollBar>(c).Min(), vbs::ToLong(v));
     }},
}};
constexpr std::array<Row, 1> timerRows{{
    {u"Interval", Property, 0, 0, [](Control& c, Arguments) { return Number(As<Timer>(c).Interval()); },
     [](Control& c, Arguments, const Value& v) { As<Timer>(c).SetInterval(vbs::ToLong(v)); }},
}};

}  // namespace

Value GetBorderStyle(Control& control, Arguments) {
  return Number(control.Look().borderStyle.value_or(control.Kind() == ControlKind::Label ? 0 : 1));
}

void PutBorderStyle(Control& control, Arguments, const Value& value) {
  Looks look = control.Look();
  look.borderStyle = StyleOf(value, 6);
  control.SetLook(look);
}

const Table& ControlTable(ControlKind kind) {
  static const std::array tables = std::to_array<Table>({
      {ControlKind::TextBox, u"TextBox", {TextBoxRows(), FontRows(), CommonRows()}, true},
      {ControlKind::ComboBox, u"ComboBox", {ComboBoxRows(), FontRows(), CommonRows()}, true},
      {ControlKind::CheckBox, u"CheckBox", {checkBoxRows, FontRows(), CommonRows()}, true},
      {ControlKind::OptionButton, u"OptionButton", {optionRows, FontRows(), CommonRows()}, true},
      {ControlKind::CommandButton, u"CommandButton", {commandRows, FontRows(), CommonRows()}, true},
      {ControlKind::Label, u"Label", {labelRows, FontRows(), CommonRows()}, true},
      {ControlKind::Frame, u"Frame", {frameRows, FontRows(), CommonRows()}, true},
      {ControlKind::Shape, u"Shape", {shapeRows, {}, CommonRows()}, false},
      {ControlKind::ScrollBar, u"ScrollBar", {scrollRows, {}, CommonRows()}, true},
      {ControlKind::ListBox, u"ListBox", {ListBoxRows(), FontRows(), CommonRows()}, true},
      {ControlKind::RichTextBox, u"RichTextBox", {DisplayRows(), FontRows(), CommonRows()}, true},
      {ControlKind::Timer, u"Timer", {timerRows, {}, CommonRows()}, false},
  });
  return *std::ranges::find(tables, kind, &Table::kind);
}

}  // namespace quarlin
