// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/dictionary.h"

#include <array>
#include <utility>
#include <vector>

#include "script/values/array.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

enum CompareMode { binaryCompare = 0, textCompare = 1 };

class KeyWalk final : public Enumerator {
 public:
  explicit KeyWalk(std::vector<Value> keys) : share_(keys.size() * sizeof(Value)), keys_(std::move(keys)) {}
  std::optional<Value> Next() override {
    if (next_ == keys_.size()) return std::nullopt;
    return keys_[next_++];
  }

 private:
  HeapShare share_;
  std::vector<Value> keys_;
  std::size_t next_ = 0;
};

Value Item(Dictionary& self, Arguments arguments) {
  return self.Table().FindOrAdd(arguments[0]);
}

void PutItem(Dictionary& self, Arguments indices, const Value& value) {
  if (indices.size() != 1) throw ScriptError(wrongArgumentCount);
  self.Table().FindOrAdd(indices[0]) = value;
}

Value Exists(Dictionary& self, Arguments arguments) {
  return Value::Bool(self.Table().Has(arguments[0]));
}

Value Add(Dictionary& self, Arguments arguments) {
  if (!self.Table().Add(arguments[0], arguments[1])) throw ScriptError(keyExists, QuotedText(arguments[0]));
  return {};
}

Value Remove(Dictionary& self, Arguments arguments) {
  if (!self.Table().Remove(arguments[0])) throw ScriptError(elementNotFound, QuotedText(arguments[0]));
  return {};
}

Value RemoveAll(Dictionary& self, Arguments) {
  self.Table().Clear();
  return {};
}

Value Count(Dictionary& self, Arguments) {
  return CountValue(self.Table().Count());
}

Value Keys(Dictionary& self, Arguments) {
  return Value::Array(ArrayBody::Of(self.Table().Keys()));
}

Value Items(Dictionary& self, Arguments) {
  return Value::Array(ArrayBody::Of(self.Table().Items()));
}

void PutKey(Dictionary& self, Arguments indices, const Value& value) {
  if (indices.size() != 1) throw ScriptError(wrongArgumentCount);
  self.Table().Rename(indices[0], value);
}

Value GetCompareMode(Dictionary& self, Arguments) {
  return Value::Long(self.Table().IgnoresCase() ? textCompare : binaryCompare);
}

void PutCompareMode(Dictionary& self, Arguments, const Value& value) {
  const std::int32_t mode = ToLong(value);
  if (self.Table().Count() != 0 || (mode != binaryCompare && mode != textCompare)) {
    throw ScriptError(invalidCall);
  }
  self.Table().IgnoreCase(mode == textCompare);
}

constexpr auto members = std::to_array<Member<Dictionary>>({
    {u"Item", MemberKind::Indexed, 1, 1, Item, PutItem, true},
    {u"Exists", MemberKind::Method, 1, 1, Exists},
    {u"Add", MemberKind::Method, 2, 2, Add},
    {u"Count", MemberKind::Property, 0, 0, Count},
    {u"Keys", MemberKind::Method, 0, 0, Keys},
    {u"Items", MemberKind::Method, 0, 0, Items},
    {u"Remove", MemberKind::Method, 1, 1, Remove},
    {u"RemoveAll", MemberKind::Method, 0, 0, RemoveAll},
    {u"Key", MemberKind::Indexed, 1, 1, nullptr, PutKey},
    {u"CompareMode", MemberKind::Property, 0, 0, GetCompareMode, PutCompareMode},
});

}  // namespace

std::span<const Member<Dictionary>> Dictionary::Members() {
  return members;
}

void Dictionary::Put(int member, Arguments indices, const Value& value, PutKind kind) {
  const bool plain = kind == PutKind::Let && value.IsObject();
  TableObject::Put(member, indices, plain ? Plain(value) : value, kind);
}

std::unique_ptr<Enumerator> Dictionary::Enumerate() {
  return std::make_unique<KeyWalk>(table_.Keys());
}

}  // namespace quarlin::vbs
