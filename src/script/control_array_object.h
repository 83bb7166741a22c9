// SPDX-License-Identifier: GPL-3.0-or-later
// A control array as scripts see it: `TextIO(3)`, `TextIO.Count`, `For Each box In TextIO`.
#pragma once

#include <map>
#include <span>

#include "script/values/dispatch.h"

namespace quarlin {

class ControlArrayObject : public vbs::TableObject<ControlArrayObject> {
 public:
  static std::span<const vbs::Member<ControlArrayObject>> Members();
  std::u16string_view TypeName() const override { return u"ControlArray"; }
  std::unique_ptr<vbs::Enumerator> Enumerate() override;

  void Add(int index, vbs::ObjectRef control) { items_.emplace(index, std::move(control)); }

  // The one element that the arguments name. Error 9 where there is none, 450 for a wrong count.
  vbs::Dispatch& At(vbs::Arguments arguments) const;

 private:
  std::map<int, vbs::ObjectRef> items_;  // never empty
};

}  // namespace quarlin
