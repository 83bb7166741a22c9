// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/control_array_object.h"

#include <array>

#include "script/values/conversions.h"

namespace quarlin {

using vbs::Arguments;
using vbs::Value;

namespace {

class ItemEnumerator : public vbs::Enumerator {
 public:
  explicit ItemEnumerator(const std::map<int, vbs::ObjectRef>& items) {
    for (const auto& [index, item] : items) items_.push_back(item);
  }
  std::optional<Value> Next() override {
    return next_ < items_.size() ? std::optional(Value::Object(items_[next_++])) : std::nullopt;
  }

 private:
  std::vector<vbs::ObjectRef> items_;
  std::size_t next_ = 0;
};

}  // namespace

std::span<const vbs::Member<ControlArrayObject>> ControlArrayObject::Members() {
  using Self = ControlArrayObject;
  static constexpr std::array<vbs::Member<Self>, 4> members{{
      {u"Item", vbs::MemberKind::Indexed, 1, 1,
       [](Self& self, Arguments arguments) { return Value::Object(&self.At(arguments)); },
       [](Self& self, Arguments indices, const Value& value) {
         self.At(indices).Put(defaultMember, {}, value, vbs::PutKind::Let);
       },
       true},
      {u"Count", vbs::MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::Long(static_cast<std::int32_t>(self.items_.size())); }},
      {u"LBound", vbs::MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::Long(self.items_.begin()->first); }},
      {u"UBound", vbs::MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::Long(self.items_.rbegin()->first); }},
  }};
  return members;
}

vbs::Dispatch& ControlArrayObject::At(Arguments arguments) const {
  if (arguments.size() != 1) throw vbs::ScriptError(vbs::wrongArgumentCount);
  const auto found = items_.find(vbs::ToLong(arguments[0]));
  if (found == items_.end()) throw vbs::ScriptError(vbs::subscriptOutOfRange);
  return *found->second;
}

std::unique_ptr<vbs::Enumerator> ControlArrayObject::Enumerate() {
  return std::make_unique<ItemEnumerator>(items_);
}

}  // namespace quarlin
