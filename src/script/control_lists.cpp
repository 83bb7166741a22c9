// SPDX-License-Identifier: GPL-3.0-or-later
// The members of combo boxes and list boxes in scripts.
#include "controls/controls.h"
#include "script/control_members.h"
#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;
using Row = ControlObject::Row;

const std::string& ItemText(const std::string& item) {
  return item;
}
const std::string& ItemText(const ListEntry& item) {
  return item.text;
}

Value Number(int number) {
  return Value::Long(number);
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
Value GetItemData(Control& control, Arguments arguments) {
  return Value::Long(As<Kind>(control).Numbers().At(EntryIndex<Kind>(control, arguments[0])));
}

template <class Kind>
void PutItemData(Control& control, Arguments indices, const Value& value) {
  As<Kind>(control).Numbers().Set(EntryIndex<Kind>(control, indices[0]), vbs::ToLong(value));
}

template <class Kind>
constexpr Row itemDataRow{u"ItemData", Indexed, 1, 1, GetItemData<Kind>, PutItemData<Kind>};
template <class Kind>
constexpr Row newIndexRow{u"NewIndex", Property, 0, 0,
                          [](Control& c, Arguments) { return Number(As<Kind>(c).Numbers().Newest()); }};
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

constexpr std::array comboBoxRows = std::to_array<Row>({
    textRow<ComboBox>,
    listRow<ComboBox>,
    listIndexRow<ComboBox>,
    listCountRow<ComboBox>,
    addItemRow<ComboBox>,
    removeItemRow<ComboBox>,
    clearRow<ComboBox>,
    itemDataRow<ComboBox>,
    newIndexRow<ComboBox>,
});
constexpr std::array listBoxRows = std::to_array<Row>({
    {u"Text", Property, 0, 0, [](Control& c, Arguments) { return TextValue(As<ListBox>(c).Text()); },
     PutSelectedText},
    listRow<ListBox>,
    listIndexRow<ListBox>,
    listCountRow<ListBox>,
    addItemRow<ListBox>,
    removeItemRow<ListBox>,
    clearRow<ListBox>,
    itemDataRow<ListBox>,
    newIndexRow<ListBox>,
});

}  // namespace

std::span<const Row> ComboBoxRows() {
  return comboBoxRows;
}

std::span<const Row> ListBoxRows() {
  return listBoxRows;
}

}  // namespace quarlin
