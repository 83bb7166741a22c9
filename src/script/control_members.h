// SPDX-License-Identifier: GPL-3.0-or-later
// The members of the controls in scripts: those that every kind has, and those of each kind.
#pragma once

#include <span>
#include <string_view>

#include "controls/control.h"
#include "script/control_object.h"

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

// A kind's first row is its default member, where it has one.
struct ControlObject::Table {
  ControlKind kind;
  std::u16string_view typeName;
  std::span<const Row> rows;
  bool hasDefault;
};

std::span<const ControlObject::Row> CommonControlRows();
const ControlObject::Table& ControlTable(ControlKind kind);

}  // namespace quarlin
