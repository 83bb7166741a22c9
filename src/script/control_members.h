// SPDX-License-Identifier: GPL-3.0-or-later
// The members of the controls in scripts: those that every kind has, and those of each kind.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "controls/control.h"
#include "script/control_object.h"
#include "script/script_text.h"

namespace quarlin {

struct ControlObject::Row {
  std::u16string_view name;
  vbs::MemberKind kind;
  int fewest;  // arguments
  int most;
  vbs::Value (*get)(Control& control, vbs::Arguments arguments);  // null: cannot be read
  void (*put)(Control& control, vbs::Arguments indices,
              const vbs::Value& value) = nullptr;  // null: cannot be written
};

// A kind's first row is its default member, where it has one. The rows of what it has in common with others
// follow.
struct ControlObject::Table {
  ControlKind kind;
  std::u16string_view typeName;
  std::array<std::span<const Row>, 3> parts;
  bool hasDefault;
};

const ControlObject::Table& ControlTable(ControlKind kind);

// Of one kind each.
std::span<const ControlObject::Row> TextBoxRows();
std::span<const ControlObject::Row> DisplayRows();
std::span<const ControlObject::Row> ComboBoxRows();
std::span<const ControlObject::Row> ListBoxRows();

// Of all kinds; of those that show text.
std::span<const ControlObject::Row> CommonRows();
std::span<const ControlObject::Row> FontRows();

// For the tables.

vbs::Value GetBorderStyle(Control& control, vbs::Arguments arguments);
void PutBorderStyle(Control& control, vbs::Arguments indices, const vbs::Value& value);

constexpr ControlObject::Row borderStyleRow{u"BorderStyle", vbs::MemberKind::Property, 0, 0, GetBorderStyle,
                                            PutBorderStyle};

template <class Kind>
Kind& As(Control& control) {
  return static_cast<Kind&>(control);
}

template <class Kind>
constexpr ControlObject::Row textRow{
    u"Text",
    vbs::MemberKind::Property,
    0,
    0,
    [](Control& c, vbs::Arguments) { return TextValue(As<Kind>(c).Text()); },
    [](Control& c, vbs::Arguments, const vbs::Value& v) { As<Kind>(c).SetText(BytesOfValue(v)); }};

template <class Kind>
constexpr ControlObject::Row captionRow{
    u"Caption",
    vbs::MemberKind::Property,
    0,
    0,
    [](Control& c, vbs::Arguments) { return TextValue(As<Kind>(c).Caption()); },
    [](Control& c, vbs::Arguments, const vbs::Value& v) { As<Kind>(c).SetCaption(BytesOfValue(v)); }};

}  // namespace quarlin
