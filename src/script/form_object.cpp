// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/form_object.h"

#include "script/control_object.h"
#include "script/script_text.h"
#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

FormMember WindowStateMember(Form& form) {
  return {u"WindowState",
          vbs::MemberKind::Property,
          0,
          0,
          [&form](Arguments) { return Value::Integer(static_cast<std::int16_t>(form.State())); },
          [&form](const Value& value) {
            const std::int32_t state = vbs::ToLong(value);
            if (state < 0 || state > 2) throw vbs::ScriptError(vbs::invalidCall);
            form.SetState(static_cast<WindowState>(state));
          }};
}

FormObject::FormObject(std::u16string_view typeName, const ControlCollection& controls,
                       std::vector<FormMember> members)
    : typeName_(typeName), members_(std::move(members)) {
  int number = 0;
  for (const FormMember& member : members_) numbers_.emplace(Folded(member.name), ++number);
  for (Control* control : controls.All()) AddControl(*control);
}

std::u16string FormObject::Folded(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) unit = vbs::LowerOf(unit);
  return folded;
}

void FormObject::AddControl(Control& control) {
  const std::u16string name = Utf16FromBytes(control.Name());
  const int next = static_cast<int>(members_.size() + entries_.size()) + 1;
  const auto [place, isNew] = numbers_.emplace(Folded(name), next);
  vbs::ObjectRef object(new ControlObject(control));
  if (!control.Index()) {
    if (isNew) entries_.push_back({name, std::move(object)});
    return;
  }
  if (isNew) {
    auto* array = new ControlArrayObject;
    entries_.push_back({name, vbs::ObjectRef(array), array});
  }
  if (MemberAt(place->second) == nullptr)
    EntryAt(place->second).array->Add(*control.Index(), std::move(object));
}

std::optional<int> FormObject::Find(std::u16string_view name) {
  const auto found = numbers_.find(Folded(name));
  return found == numbers_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<int> FormObject::FindBare(std::u16string_view name) {
  const auto number = Find(name);
  const FormMember* member = number ? MemberAt(*number) : nullptr;
  return member == nullptr || member->bare ? number : std::nullopt;
}

const FormMember* FormObject::MemberAt(int number) const {
  const auto index = static_cast<std::size_t>(number) - 1;
  return index < members_.size() ? &members_[index] : nullptr;
}

const FormObject::Entry& FormObject::EntryAt(int number) const {
  return entries_[static_cast<std::size_t>(number) - 1 - members_.size()];
}

vbs::MemberKind FormObject::KindOf(int number) {
  if (number == defaultMember) return vbs::MemberKind::Method;
  if (const FormMember* member = MemberAt(number)) return member->kind;
  return EntryAt(number).array != nullptr ? vbs::MemberKind::Indexed : vbs::MemberKind::Property;
}

Value FormObject::Invoke(int number, Arguments arguments) {
  if (number == defaultMember) throw vbs::ScriptError(vbs::noSuchMember);
  const FormMember* member = MemberAt(number);
  if (member == nullptr) {
    const Entry& entry = EntryAt(number);
    return arguments.empty() ? Value::Object(entry.object) : entry.object->Invoke(defaultMember, arguments);
  }
  if (!member->get) throw vbs::ScriptError(vbs::noSuchMember, member->name);
  const int count = static_cast<int>(arguments.size());
  if (count < member->fewest || count > member->most)
    throw vbs::ScriptError(vbs::wrongArgumentCount, member->name);
  return member->get(arguments);
}

void FormObject::Put(int number, Arguments indices, const Value& value, vbs::PutKind kind) {
  const FormMember* member = number == defaultMember ? nullptr : MemberAt(number);
  if (number != defaultMember && member == nullptr) {
    if (kind == vbs::PutKind::Set) throw vbs::ScriptError(vbs::noSuchMember, EntryAt(number).name);
    EntryAt(number).object->Put(defaultMember, indices, value, kind);
    return;
  }
  if (member == nullptr || !member->put) throw vbs::ScriptError(vbs::noSuchMember);
  member->put(value);
}

std::vector<std::u16string> FormObject::MemberNames() {
  std::vector<std::u16string> names;
  for (const FormMember& member : members_) names.emplace_back(member.name);
  for (const Entry& entry : entries_) names.push_back(entry.name);
  return names;
}

}  // namespace quarlin
