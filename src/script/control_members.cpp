// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/control_members.h"

#include <array>

#include "base/enum_table.h"
#include "controls/controls.h"
#include "controls/timer.h"
#include "display/display_controls.h"
#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;
using Table = ControlObject::Table;

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

Value Number(int number) {
  return Value::Long(number);
}

// What every control has.

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

Value GetIndex(Control& control, Arguments) {
  if (!control.Index()) throw vbs::ScriptError(vbs::noSuchMember, u"Index");
  return Number(*control.Index());
}

constexpr std::array<Row, 12> commonRows{{
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
    {u"SetFocus", Method, 0, 0,
     [](Control& c, Arguments) {
       c.SetFocus();
       return Value();
     }},
}};

// What several kinds have.

template <class Kind>
Kind& As(Control& control) {
  return static_cast<Kind&>(control);
}

template <class Kind>
constexpr Row textRow{u"Text",
                      Property,
                      0,
                      0,
                      [](Control& c, Arguments) { return TextValue(As<Kind>(c).Text()); },
                      [](Control& c, Arguments, const Value& v) { As<Kind>(c).SetText(BytesOfValue(v)); }};

template <class Kind>
constexpr Row captionRow{
    u"Caption",
    Property,
    0,
    0,
    [](Control& c, Arguments) { return TextValue(As<Kind>(c).Caption()); },
    [](Control& c, Arguments, const Value& v) { As<Kind>(c).SetCaption(BytesOfValue(v)); }};

// The lists of combo boxes and list boxes.

const std::string& ItemText(const std::string& item) {
  return item;
}
const std::string& ItemText(const ListEntry& item) {
  return item.text;
}

template <class Kind>
int Count(Control& control) {
  return static_cast<int>(As<Kind>(control).List().size());
}

// The index of an entry that is there; `beyond` more may stand behind the last.
template <class Kind>
int EntryIndex(Control& control, const Value& value, int beyond = 0) {
  const std::int32_t index = vbs::ToLong(value);
  if (index < 0 || index >= Count<Kind>(control) + beyond) throw vbs::ScriptError(vbs::invalidCall);
  return index;
}

template <class Kind>
Value GetEntry(Control& control, Arguments arguments) {
  const std::int32_t index = vbs::ToLong(arguments[0]);
  if (index < 0 || index >= Count<Kind>(control)) return TextValue("");
  return TextValue(ItemText(As<Kind>(control).List()[static_cast<std::size_t>(index)]));
}

template <class Kind>
void PutEntry(Control& control, Arguments indices, const Value& value) {
  As<Kind>(control).SetItem(EntryIndex<Kind>(control, indices[0]), BytesOfValue(value));
}

template <class Kind>
void PutListIndex(Control& control, Arguments, const Value& value) {
  const std::int32_t index = vbs::ToLong(value);
  As<Kind>(control).SetListIndex(index == -1 ? -1 : EntryIndex<Kind>(control, value));
}

template <class Kind>
Value AddItem(Control& control, Arguments arguments) {
  const std::string text = BytesOfValue(arguments[0]);
  const bool hasPlace = arguments.size() > 1 && !arguments[1].IsMissing();
  const int place = hasPlace ? EntryIndex<Kind>(control, arguments[1], 1) : Count<Kind>(control);
  As<Kind>(control).InsertItem(place, text);
  return Value();
}

template <class Kind>
Value RemoveItem(Control& control, Arguments arguments) {
  As<Kind>(control).RemoveItem(EntryIndex<Kind>(control, arguments[0]));
  return Value();
}

void ClearList(ComboBox& box) {
  box.Clear();
  box.SetText("");
}
void ClearList(ListBox& box) {
  box.Clear();
}

template <class Kind>
constexpr Row listRow{u"List", Indexed, 1, 1, GetEntry<Kind>, PutEntry<Kind>};
template <class Kind>
constexpr Row listIndexRow{
    u"ListIndex",      Property, 0, 0, [](Control& c, Arguments) { return Number(As<Kind>(c).ListIndex()); },
    PutListIndex<Kind>};
template <class Kind>
constexpr Row listCountRow{u"ListCount", Property, 0, 0,
                           [](Control& c, Arguments) { return Number(Count<Kind>(c)); }};
template <class Kind>
constexpr Row addItemRow{u"AddItem", Method, 1, 2, AddItem<Kind>};
template <class Kind>
constexpr Row removeItemRow{u"RemoveItem", Method, 1, 1, RemoveItem<Kind>};
template <class Kind>
constexpr Row clearRow{u"Clear", Method, 0, 0, [](Control& c, Arguments) {
                         ClearList(As<Kind>(c));
                         return Value();
                       }};

void PutSelectedText(Control& control, Arguments, const Value& value) {
  auto& box = As<ListBox>(control);
  const std::string text = BytesOfValue(value);
  int found = -1;
  for (int i = 0; i < box.ListCount() && found < 0; ++i) {
    if (box.List()[static_cast<std::size_t>(i)].text == text) found = i;
  }
  box.SetListIndex(found);
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

Value GetDisplayText(Control& control, Arguments) {
  const TextRing& ring = As<DisplayText>(control).Ring();
  std::string text;
  for (std::uint64_t i = ring.FirstLine(); i < ring.EndLine(); ++i) text += ring.Line(i).text;
  return TextValue(text);
}

void PutDisplayText(Control& control, Arguments, const Value& value) {
  const std::string text = BytesOfValue(value);
  As<DisplayText>(control).Clear();
  if (!text.empty()) As<DisplayText>(control).Append(text, TextKind::Own, colors::black);
}

constexpr std::array<Row, 1> textBoxRows{textRow<TextBox>};
constexpr std::array<Row, 7> comboBoxRows{
    textRow<ComboBox>,    listRow<ComboBox>,       listIndexRow<ComboBox>, listCountRow<ComboBox>,
    addItemRow<ComboBox>, removeItemRow<ComboBox>, clearRow<ComboBox>};
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
constexpr std::array<Row, 1> labelRows{captionRow<Label>};
constexpr std::array<Row, 1> frameRows{captionRow<Frame>};
constexpr std::array<Row, 2> shapeRows{{
    {u"FillColor", Property, 0, 0, GetFill, PutFill},
    {u"BackColor", Property, 0, 0, GetFill, PutFill},  // a lamp has one colour
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
constexpr std::array<Row, 7> listBoxRows{{
    {u"Text", Property, 0, 0, [](Control& c, Arguments) { return TextValue(As<ListBox>(c).Text()); },
     PutSelectedText},
    listRow<ListBox>,
    listIndexRow<ListBox>,
    listCountRow<ListBox>,
    addItemRow<ListBox>,
    removeItemRow<ListBox>,
    clearRow<ListBox>,
}};
constexpr std::array<Row, 1> displayRows{{{u"Text", Property, 0, 0, GetDisplayText, PutDisplayText}}};
constexpr std::array<Row, 1> timerRows{{
    {u"Interval", Property, 0, 0, [](Control& c, Arguments) { return Number(As<Timer>(c).Interval()); },
     [](Control& c, Arguments, const Value& v) { As<Timer>(c).SetInterval(vbs::ToLong(v)); }},
}};

constexpr auto tables = std::to_array<Table>({
    {ControlKind::TextBox, u"TextBox", textBoxRows, true},
    {ControlKind::ComboBox, u"ComboBox", comboBoxRows, true},
    {ControlKind::CheckBox, u"CheckBox", checkBoxRows, true},
    {ControlKind::OptionButton, u"OptionButton", optionRows, true},
    {ControlKind::CommandButton, u"CommandButton", commandRows, true},
    {ControlKind::Label, u"Label", labelRows, true},
    {ControlKind::Frame, u"Frame", frameRows, true},
    {ControlKind::Shape, u"Shape", shapeRows, false},
    {ControlKind::ScrollBar, u"ScrollBar", scrollRows, true},
    {ControlKind::ListBox, u"ListBox", listBoxRows, true},
    {ControlKind::RichTextBox, u"RichTextBox", displayRows, true},
    {ControlKind::Timer, u"Timer", timerRows, false},
});
static_assert(StandInOrder(tables, &Table::kind, ControlKind::Timer));

}  // namespace

std::span<const Row> CommonControlRows() {
  return commonRows;
}

const Table& ControlTable(ControlKind kind) {
  return tables[static_cast<std::size_t>(kind)];
}

}  // namespace quarlin
