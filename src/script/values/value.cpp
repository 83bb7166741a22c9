// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/value.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <vector>

#include "script/values/array.h"
#include "script/values/dispatch.h"
#include "script/values/heap.h"

namespace quarlin::vbs {
namespace {

constexpr int deepestBurial = 200;

// One body for each single character that instruments send, so that taking a text apart makes none.
std::array<Value, 256> MakeCharacters() {
  std::array<Value, 256> characters;
  for (std::size_t code = 0; code < characters.size(); ++code) {
    const char16_t unit = static_cast<char16_t>(code);
    characters[code] = Value::Adopt(TextBody::Make({&unit, 1}));
  }
  return characters;
}

}  // namespace

void Counted::Bury(Counted& dead) noexcept {
  static int depth = 0;
  static std::vector<Counted*> waiting;
  if (depth >= deepestBurial) {
    waiting.push_back(&dead);
    return;
  }
  ++depth;
  dead.LastReferenceGone();
  while (depth == 1 && !waiting.empty()) {
    Counted* next = waiting.back();
    waiting.pop_back();
    next->LastReferenceGone();
  }
  --depth;
}

TextBody* TextBody::Make(std::u16string_view text, std::size_t capacity) {
  if (text.size() > longestText) throw ScriptError(outOfStringSpace);
  capacity = std::max(capacity, text.size());
  const std::size_t bytes = sizeof(TextBody) + capacity * sizeof(char16_t);
  heap::Charge(bytes);
  auto* body = ::new (::operator new(bytes)) TextBody(text.size(), capacity);
  std::copy(text.begin(), text.end(), body->Characters());
  return body;
}

bool TextBody::Append(std::u16string_view text) {
  if (text.size() > capacity_ - length_) return false;
  std::copy(text.begin(), text.end(), Characters() + length_);
  length_ += text.size();
  return true;
}

void TextBody::LastReferenceGone() noexcept {
  heap::Discharge(sizeof(TextBody) + capacity_ * sizeof(char16_t));
  this->~TextBody();
  ::operator delete(static_cast<void*>(this));
}

Value Value::String(std::u16string_view text) {
  if (text.size() == 1) return Character(text.front());
  return Adopt(TextBody::Make(text));
}

Value Value::Character(char16_t unit) {
  static const std::array<Value, 256> characters = MakeCharacters();
  if (unit < characters.size()) return characters[unit];
  return Adopt(TextBody::Make({&unit, 1}));
}

Value Value::Array(const ArrayRef& array) {
  return Value(Kind::Array, static_cast<Counted*>(array.Get()));
}

Value Value::Object(const ObjectRef& object) {
  return Value(Kind::Object, static_cast<Counted*>(object.Get()));
}

Value Value::Whole(std::int64_t value) {
  if (value == static_cast<std::int16_t>(value)) return Integer(static_cast<std::int16_t>(value));
  if (value == static_cast<std::int32_t>(value)) return Long(static_cast<std::int32_t>(value));
  return Double(static_cast<double>(value));
}

ArrayBody& Value::AsArray() const {
  return static_cast<ArrayBody&>(*held_.counted);
}

Dispatch* Value::AsObject() const {
  return static_cast<Dispatch*>(held_.counted);
}

void Value::AppendText(std::u16string_view text) {
  TextBody& body = Body();
  const std::size_t length = body.View().size() + text.size();
  if (length > longestText) throw ScriptError(outOfStringSpace);
  if (body.References() == 1 && body.Append(text)) return;
  // `text` may be a part of this very body, which lives on until the new one holds both.
  TextBody* grown = TextBody::Make(body.View(), std::max<std::size_t>(length + length / 2, 16));
  grown->Append(text);
  *this = Adopt(grown);
}

ArrayBody& Value::OwnArray() {
  if (held_.counted->References() > 1) *this = Array(AsArray().Copy(AsArray().Fixed()));
  return AsArray();
}

}  // namespace quarlin::vbs
