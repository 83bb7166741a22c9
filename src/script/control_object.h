// SPDX-License-Identifier: GPL-3.0-or-later
// A control as scripts see it: its properties and methods by name, by the kind of the control.
#pragma once

#include "controls/control.h"
#include "script/values/dispatch.h"

namespace quarlin {

class ControlObject : public vbs::Dispatch {
 public:
  explicit ControlObject(Control& control);

  std::u16string_view TypeName() const override;
  std::optional<int> Find(std::u16string_view name) override;
  const void* Shape() const override { return &table_; }
  vbs::MemberKind KindOf(int member) override;
  vbs::Value Invoke(int member, vbs::Arguments arguments) override;
  void Put(int member, vbs::Arguments indices, const vbs::Value& value, vbs::PutKind kind) override;
  bool HasDefault() override { return RowOf(defaultMember) != nullptr; }
  std::vector<std::u16string> MemberNames() override;

  struct Row;
  struct Table;

 private:
  const Row* RowOf(int member) const;

  Control& control_;
  const Table& table_;
};

}  // namespace quarlin
