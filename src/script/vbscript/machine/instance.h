// SPDX-License-Identifier: GPL-3.0-or-later
// The objects of a script's own classes, and the references to procedures that GetRef gives.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "script/values/dispatch.h"
#include "script/values/heap_share.h"
#include "script/values/holders.h"
#include "script/vbscript/compiler/symbols.h"

namespace quarlin::vbs {

class Machine;

// Outlives the machine, so that an object which somebody else still holds finds out that it has gone.
struct MachineLink : Counted {
  Machine* machine = nullptr;
};

class Instance final : public Holder {
 public:
  Instance(std::shared_ptr<const ClassInfo> info, Ref<MachineLink> link, Holders* list);

  const ClassInfo& Info() const { return *info_; }
  std::vector<Value>& Fields() { return fields_; }

  void LetGo() override {
    for (Value& field : fields_) field = Value();
  }
  void ShowHeld(HeldValues& values) override {
    for (const Value& field : fields_) values.See(field);
  }
  bool Finish() noexcept override;

  // The number of a member as the rest of the world counts: 1 and on, 0 for the default member.
  static int NumberOf(int index) { return index + 1; }
  const ClassMember* MemberAt(int number) const;

  Instance* AsInstance() override { return this; }
  std::u16string_view TypeName() const override { return info_->name; }
  std::optional<int> Find(std::u16string_view name) override;
  const void* Shape() const override { return info_->shape; }
  MemberKind KindOf(int member) override;
  Value Invoke(int member, Arguments arguments) override;
  void Put(int member, Arguments indices, const Value& value, PutKind kind) override;
  bool HasDefault() override { return info_->defaultMember != ClassMember::none; }

 private:
  void LastReferenceGone() noexcept override;
  Machine& TheMachine() const;
  const ClassMember& PublicMember(int number) const;

  std::shared_ptr<const ClassInfo> info_;
  Ref<MachineLink> link_;
  HeapShare share_;  // of the fields
  std::vector<Value> fields_;
  bool terminated_ = false;
};

class ProcedureReference final : public Dispatch {
 public:
  ProcedureReference(std::size_t slot, Ref<MachineLink> link) : slot_(slot), link_(std::move(link)) {}

  std::u16string_view TypeName() const override { return u"Object"; }
  std::optional<int> Find(std::u16string_view) override { return std::nullopt; }
  MemberKind KindOf(int) override { return MemberKind::Method; }
  Value Invoke(int member, Arguments arguments) override;
  void Put(int, Arguments, const Value&, PutKind) override { throw ScriptError(noSuchMember); }
  bool HasDefault() override { return true; }

 private:
  std::size_t slot_;
  Ref<MachineLink> link_;
};

}  // namespace quarlin::vbs
