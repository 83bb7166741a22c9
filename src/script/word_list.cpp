// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/word_list.h"

#include <array>

#include "script/values/conversions.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;

class Texts : public vbs::Enumerator {
 public:
  explicit Texts(std::vector<std::u16string> texts) : texts_(std::move(texts)) {}
  std::optional<Value> Next() override {
    return next_ < texts_.size() ? std::optional(Value::String(texts_[next_++])) : std::nullopt;
  }

 private:
  std::vector<std::u16string> texts_;
  std::size_t next_ = 0;
};

bool IsNamed(const std::u16string& word) {
  return word.size() > 1 && word.front() == u'/';
}

std::pair<std::u16string, Value> NameAndValue(std::u16string_view word) {
  word.remove_prefix(1);
  const std::size_t colon = word.find(u':');
  if (colon != word.npos) {
    return {std::u16string(word.substr(0, colon)), Value::String(word.substr(colon + 1))};
  }
  const char16_t last = word.back();
  if (last == u'+' || last == u'-') {
    return {std::u16string(word.substr(0, word.size() - 1)), Value::Bool(last == u'+')};
  }
  return {std::u16string(word), Value()};
}

}  // namespace

std::span<const vbs::Member<WordList>> WordList::Members() {
  static constexpr std::array members = std::to_array<vbs::Member<WordList>>({
      {u"Item", Indexed, 1, 1, Item, nullptr, true},
      {u"Count", Property, 0, 0, Count},
      {u"Length", Property, 0, 0, Count},
      {u"Named", Property, 0, 0, Named},
      {u"Unnamed", Property, 0, 0, Unnamed},
  });
  return members;
}

Value WordList::Item(WordList& self, Arguments arguments) {
  const std::int32_t index = vbs::ToLong(arguments[0]);
  if (index < 0 || static_cast<std::size_t>(index) >= self.words_.size())
    throw vbs::ScriptError(vbs::subscriptOutOfRange);
  return Value::String(self.words_[static_cast<std::size_t>(index)]);
}

Value WordList::Count(WordList& self, Arguments) {
  return Value::Long(static_cast<std::int32_t>(self.words_.size()));
}

Value WordList::Unnamed(WordList& self, Arguments) {
  std::vector<std::u16string> rest;
  for (const std::u16string& word : self.words_) {
    if (!IsNamed(word)) rest.push_back(word);
  }
  return Value::Object(new WordList(std::move(rest)));
}

Value WordList::Named(WordList& self, Arguments) {
  return Value::Object(new NamedWords(self.words_));
}

std::unique_ptr<vbs::Enumerator> WordList::Enumerate() {
  return std::make_unique<Texts>(words_);
}

NamedWords::NamedWords(const std::vector<std::u16string>& words) {
  for (const std::u16string& word : words) {
    if (IsNamed(word)) named_.push_back(NameAndValue(word));
  }
}

std::span<const vbs::Member<NamedWords>> NamedWords::Members() {
  static constexpr std::array members = std::to_array<vbs::Member<NamedWords>>({
      {u"Item", Indexed, 1, 1, Item, nullptr, true},
      {u"Count", Property, 0, 0, Count},
      {u"Length", Property, 0, 0, Count},
      {u"Exists", Method, 1, 1, Exists},
  });
  return members;
}

const Value* NamedWords::ValueOf(const Value& name) const {
  const std::u16string wanted(vbs::ToText(name));
  for (const auto& [known, value] : named_) {
    if (vbs::SameName(known, wanted)) return &value;
  }
  return nullptr;
}

Value NamedWords::Item(NamedWords& self, Arguments arguments) {
  const Value* value = self.ValueOf(arguments[0]);
  return value == nullptr ? Value() : *value;
}

Value NamedWords::Count(NamedWords& self, Arguments) {
  return Value::Long(static_cast<std::int32_t>(self.named_.size()));
}

Value NamedWords::Exists(NamedWords& self, Arguments arguments) {
  return Value::Bool(self.ValueOf(arguments[0]) != nullptr);
}

std::unique_ptr<vbs::Enumerator> NamedWords::Enumerate() {
  std::vector<std::u16string> names;
  for (const auto& [name, value] : named_) names.push_back(name);
  return std::make_unique<Texts>(std::move(names));
}

}  // namespace quarlin
