// SPDX-License-Identifier: GPL-3.0-or-later
// Scripting.Dictionary: items under keys, in the order in which they were added.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "script/library/key_table.h"
#include "script/values/dispatch.h"
#include "script/values/holders.h"

namespace quarlin::vbs {

class Dictionary final : public TableObject<Dictionary, Holder> {
 public:
  explicit Dictionary(Holders* list) : TableObject(list) {}
  static std::span<const Member<Dictionary>> Members();
  std::u16string_view TypeName() const override { return u"Dictionary"; }

  // Let puts what an object stands for, Set the object itself.
  void Put(int member, Arguments indices, const Value& value, PutKind kind) override;

  // The keys as they are now; what is added or removed meanwhile does not disturb the walk.
  std::unique_ptr<Enumerator> Enumerate() override;

  KeyTable& Table() { return table_; }

  void ShowHeld(HeldValues& values) override {
    table_.ForEach([&](const Value& value) { values.See(value); });
  }
  void LetGo() override { table_.Clear(); }

 private:
  KeyTable table_;
};

}  // namespace quarlin::vbs
