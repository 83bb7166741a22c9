// SPDX-License-Identifier: GPL-3.0-or-later
// A window as scripts see it: its methods, and its controls by name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "controls/form.h"
#include "script/control_array_object.h"
#include "script/values/dispatch.h"

namespace quarlin {

// A method or a property of the window itself.
struct FormMember {
  std::u16string_view name;
  vbs::MemberKind kind;
  int fewest;  // arguments
  int most;
  std::function<vbs::Value(vbs::Arguments)> get;         // empty: cannot be read
  std::function<void(const vbs::Value&)> put = nullptr;  // empty: cannot be written
  bool bare = true;                                      // can be used without the window's name
};

// "WindowState": 0 as it is placed, 1 minimized, 2 maximized.
FormMember WindowStateMember(Form& form);

class FormObject : public vbs::Dispatch {
 public:
  // The collection and what the members refer to outlive every script. A member of its own hides a control
  // of the same name. `typeName` is a literal.
  FormObject(std::u16string_view typeName, const ControlCollection& controls,
             std::vector<FormMember> members);

  std::u16string_view TypeName() const override { return typeName_; }
  std::optional<int> Find(std::u16string_view name) override;
  std::optional<int> FindBare(std::u16string_view name) override;
  const void* Shape() const override { return this; }
  vbs::MemberKind KindOf(int member) override;
  vbs::Value Invoke(int member, vbs::Arguments arguments) override;
  void Put(int member, vbs::Arguments indices, const vbs::Value& value, vbs::PutKind kind) override;
  std::vector<std::u16string> MemberNames() override;

 private:
  // A control or, then `array` is set too, a control array.
  struct Entry {
    std::u16string name;
    vbs::ObjectRef object;
    ControlArrayObject* array = nullptr;
  };

  void AddControl(Control& control);
  const FormMember* MemberAt(int number) const;
  const Entry& EntryAt(int number) const;
  static std::u16string Folded(std::u16string_view name);

  std::u16string_view typeName_;
  std::vector<FormMember> members_;  // numbers from 1 on
  std::vector<Entry> entries_;       // the numbers that follow; an object is made once, so it stays the same
  std::unordered_map<std::u16string, int> numbers_;
};

}  // namespace quarlin
