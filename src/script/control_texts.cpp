// SPDX-License-Identifier: GPL-3.0-or-later
// The members of text boxes and of the received text in scripts.
#include <limits>

#include "controls/controls.h"
#include "display/display_controls.h"
#include "script/control_members.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;

// A position or a length: none is below 0.
std::int32_t Place(const Value& value) {
  const std::int32_t place = vbs::ToLong(value);
  if (place < 0) throw vbs::ScriptError(vbs::invalidCall);
  return place;
}

std::string Part(const std::string& text, Marked marked) {
  return text.substr(static_cast<std::size_t>(marked.start), static_cast<std::size_t>(marked.length));
}

// Puts another text in the place of what is marked, and the cursor behind it.
std::string Replaced(std::string text, Marked& marked, const std::string& other) {
  text.replace(static_cast<std::size_t>(marked.start), static_cast<std::size_t>(marked.length), other);
  marked = {marked.start + static_cast<std::int32_t>(other.size()), 0};
  return text;
}

// Text boxes.

void PutBoxStart(Control& control, Arguments, const Value& value) {
  As<TextBox>(control).Select({Place(value), 0});
}

void PutBoxLength(Control& control, Arguments, const Value& value) {
  As<TextBox>(control).Select({As<TextBox>(control).Selection().start, Place(value)});
}

Value GetBoxMarked(Control& control, Arguments) {
  const auto& box = As<TextBox>(control);
  return TextValue(Part(box.Text(), box.Selection()));
}

void PutBoxMarked(Control& control, Arguments, const Value& value) {
  auto& box = As<TextBox>(control);
  Marked marked = box.Selection();
  box.SetText(Replaced(box.Text(), marked, BytesOfValue(value)));
  box.Select(marked);
}

constexpr std::array textBoxRows = std::to_array<Row>({
    textRow<TextBox>,
    {u"SelStart", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(As<TextBox>(c).Selection().start); }, PutBoxStart},
    {u"SelLength", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(As<TextBox>(c).Selection().length); }, PutBoxLength},
    {u"SelText", Property, 0, 0, GetBoxMarked, PutBoxMarked},
    borderStyleRow,
    {u"Locked", Property, 0, 0, [](Control& c, Arguments) { return Value::Bool(As<TextBox>(c).Locked()); },
     [](Control& c, Arguments, const Value& v) { As<TextBox>(c).SetLocked(vbs::ToBool(v)); }},
    {u"MaxLength", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(As<TextBox>(c).MaxLength()); },
     [](Control& c, Arguments, const Value& v) { As<TextBox>(c).SetMaxLength(Place(v)); }},
});

// The received text.

std::string TextOf(const DisplayText& display) {
  const TextRing& ring = display.Ring();
  std::string text;
  for (std::uint64_t i = ring.FirstLine(); i < ring.EndLine(); ++i) text += ring.Line(i).text;
  return text;
}

void Show(DisplayText& display, const std::string& text) {
  display.Clear();
  if (!text.empty()) display.Append(text, TextKind::Own, colors::black);
}

// What the script has marked; of its length only so much as there is.
Marked MarkedIn(const DisplayText& display) {
  return Within(display.marked, display.Ring().Bytes());
}

void PutDisplayStart(Control& control, Arguments, const Value& value) {
  As<DisplayText>(control).marked = {Place(value), 0};
}

Value GetDisplayMarked(Control& control, Arguments) {
  const auto& display = As<DisplayText>(control);
  const Marked marked = MarkedIn(display);
  return TextValue(marked.length > 0 ? Part(TextOf(display), marked) : display.OnTakeSelection());
}

// At its end it is added to, and every line keeps its colour; elsewhere the whole text is written anew.
void PutDisplayMarked(Control& control, Arguments, const Value& value) {
  auto& display = As<DisplayText>(control);
  const std::string text = BytesOfValue(value);
  Marked marked = MarkedIn(display);
  if (static_cast<std::size_t>(marked.start) == display.Ring().Bytes()) {
    display.Append(text, TextKind::Own, display.scriptColor);
    display.marked = {std::numeric_limits<std::int32_t>::max(), 0};
  } else {
    Show(display, Replaced(TextOf(display), marked, text));
    display.marked = marked;
  }
}

constexpr std::array displayRows = std::to_array<Row>({
    {u"Text", Property, 0, 0, [](Control& c, Arguments) { return TextValue(TextOf(As<DisplayText>(c))); },
     [](Control& c, Arguments, const Value& v) { Show(As<DisplayText>(c), BytesOfValue(v)); }},
    {u"SelStart", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(MarkedIn(As<DisplayText>(c)).start); }, PutDisplayStart},
    {u"SelLength", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(MarkedIn(As<DisplayText>(c)).length); },
     [](Control& c, Arguments, const Value& v) { As<DisplayText>(c).marked.length = Place(v); }},
    {u"SelText", Property, 0, 0, GetDisplayMarked, PutDisplayMarked},
    {u"SelColor", Property, 0, 0,
     [](Control& c, Arguments) { return Value::Long(As<DisplayText>(c).scriptColor); },
     [](Control& c, Arguments, const Value& v) { As<DisplayText>(c).scriptColor = vbs::ToLong(v); }},
});

}  // namespace

std::span<const Row> TextBoxRows() {
  return textBoxRows;
}

std::span<const Row> DisplayRows() {
  return displayRows;
}

}  // namespace quarlin
