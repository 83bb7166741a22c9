// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/machine/instance.h"

#include <array>
#include <utility>

#include "script/values/array.h"
#include "script/values/conversions.h"
#include "script/vbscript/machine/machine.h"

namespace quarlin::vbs {
Instance::Instance(std::shared_ptr<const ClassInfo> info, Ref<MachineLink> link, Holders* list)
    : Holder(list),
      info_(std::move(info)),
      link_(std::move(link)),
      share_(info_->fields.size() * sizeof(Value)),
      fields_(info_->fields.size()) {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    const ClassInfo::Field& field = info_->fields[i];
    if (field.isArray) fields_[i] = Value::Array(ArrayBody::Make(field.bounds, !field.bounds.empty()));
  }
}

const ClassMember* Instance::MemberAt(int number) const {
  const int index = number == defaultMember ? info_->defaultMember : number - 1;
  return index == ClassMember::none ? nullptr : &info_->members[static_cast<std::size_t>(index)];
}

std::optional<int> Instance::Find(std::u16string_view name) {
  const auto found = info_->numbers.find(Folded(name));
  if (found == info_->numbers.end()) return std::nullopt;
  return NumberOf(found->second);
}

MemberKind Instance::KindOf(int number) {
  const ClassMember* member = MemberAt(number);
  return member != nullptr && (member->field != ClassMember::none || member->let != ClassMember::none)
             ? MemberKind::Property
             : MemberKind::Method;
}

Machine& Instance::TheMachine() const {
  if (link_->machine == nullptr) throw ScriptError(objectRequired);
  return *link_->machine;
}

const ClassMember& Instance::PublicMember(int number) const {
  const ClassMember* member = MemberAt(number);
  if (member == nullptr || member->isPrivate) throw ScriptError(noSuchMember, member ? member->name : u"");
  return *member;
}

Value Instance::Invoke(int number, Arguments arguments) {
  return TheMachine().GetFrom(*this, PublicMember(number), arguments);
}

void Instance::Put(int number, Arguments indices, const Value& value, PutKind kind) {
  TheMachine().PutInto(*this, PublicMember(number), indices, value, kind);
}

bool Instance::Finish() noexcept {
  if (std::exchange(terminated_, true) || link_->machine == nullptr) return false;
  if (info_->terminate == ClassMember::none) return false;
  link_->machine->RunTerminate(*this);
  return true;
}

void Instance::LastReferenceGone() noexcept {
  AddReference();
  if (Finish()) return RemoveReference();  // the object may have been stored somewhere
  Holder::LastReferenceGone();
}

Value ProcedureReference::Invoke(int, Arguments arguments) {
  if (link_->machine == nullptr) throw ScriptError(objectRequired);
  return link_->machine->RunSlot(slot_, nullptr, arguments);
}

}  // namespace quarlin::vbs
