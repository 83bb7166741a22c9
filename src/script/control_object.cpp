// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/control_object.h"

#include "script/control_members.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

// The rows of all parts have the numbers from 1 on.
ControlObject::ControlObject(Control& control) : control_(control), table_(ControlTable(control.Kind())) {}

std::u16string_view ControlObject::TypeName() const {
  return table_.typeName;
}

std::optional<int> ControlObject::Find(std::u16string_view name) {
  int number = 1;
  for (const auto rows : table_.parts) {
    for (const Row& row : rows) {
      if (vbs::SameName(row.name, name)) return number;
      ++number;
    }
  }
  return std::nullopt;
}

const ControlObject::Row* ControlObject::RowOf(int member) const {
  if (member == defaultMember) return table_.hasDefault ? table_.parts[0].data() : nullptr;
  auto index = static_cast<std::size_t>(member) - 1;
  for (const auto rows : table_.parts) {
    if (index < rows.size()) return &rows[index];
    index -= rows.size();
  }
  return nullptr;
}

vbs::MemberKind ControlObject::KindOf(int member) {
  const Row* row = RowOf(member);
  return row == nullptr ? vbs::MemberKind::Method : row->kind;
}

Value ControlObject::Invoke(int member, Arguments arguments) {
  const Row* row = RowOf(member);
  if (row == nullptr || row->get == nullptr) throw vbs::ScriptError(vbs::noSuchMember);
  const int count = static_cast<int>(arguments.size());
  if (count < row->fewest || count > row->most) throw vbs::ScriptError(vbs::wrongArgumentCount);
  return row->get(control_, arguments);
}

void ControlObject::Put(int member, Arguments indices, const Value& value, vbs::PutKind) {
  const Row* row = RowOf(member);
  if (row == nullptr || row->put == nullptr) throw vbs::ScriptError(vbs::noSuchMember);
  const int count = static_cast<int>(indices.size());
  if (count < row->fewest || count > row->most) throw vbs::ScriptError(vbs::wrongArgumentCount);
  row->put(control_, indices, value);
}

std::vector<std::u16string> ControlObject::MemberNames() {
  std::vector<std::u16string> names;
  for (const auto rows : table_.parts) {
    for (const Row& row : rows) names.emplace_back(row.name);
  }
  return names;
}

}  // namespace quarlin
