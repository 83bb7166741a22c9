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

class Dictionary final : public TableObject<Dictionary>, public Holder {
 public:
  explicit Dictionary(Holders* list) : Holder(list) {}
  static std::span<const Member<Dictionary>> Members();
  std::u16string_view TypeName() const override { return u"Dictionary"; }

  // Let puts what an object stands for, Set the object itself.
  void Put(int member, Arguments indices, const Value& value, PutKind kind) override;

  // The keys as they are now; what is added or removed meanwhile does not disturb the walk.
  std::unique_ptr<Enumerator> Enumerate() override;

  KeyTable& Table() { return table_; }

  void LetGo() override { table_.Clear(); }
  void KeepAlive() override { AddReference(); }
  void Release() override { RemoveReference(); }

 private:
  KeyTable table_;
};

}  // namespace quarlin::vbs
