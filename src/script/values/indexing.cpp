// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/indexing.h"

#include <array>

#include "script/values/array.h"
#include "script/values/conversions.h"

namespace quarlin::vbs {
IndexNumbers::IndexNumbers(Arguments indices) : count_(indices.size()) {
  if (count_ > numbers_.size()) throw ScriptError(subscriptOutOfRange);
  for (std::size_t i = 0; i < count_; ++i) numbers_[i] = ToLong(indices[i].Followed());
}

Value LetValue(const Value& value) {
  if (value.IsObject()) return Plain(value);
  if (value.IsArray() && value.AsArray().Fixed()) return Value::Array(value.AsArray().Copy(false));
  return value;
}

Value IndexValue(const Value& target, Arguments indices, std::u16string_view name) {
  if (target.IsArray()) {
    const IndexNumbers numbers(indices);
    if (target.IsArray()) return target.AsArray().At(numbers.Span());
  }
  if (!target.IsObject()) throw ScriptError(typeMismatch, name);
  if (target.IsNothing()) throw ScriptError(objectNotSet, name);
  const ObjectRef object(target.AsObject());
  return object->Invoke(Dispatch::defaultMember, indices);
}

void PutIndexed(Value& target, Arguments indices, const Value& value, PutKind kind,
                std::u16string_view name) {
  if (target.IsArray()) {
    Value stored = kind == PutKind::Let ? LetValue(value) : value;
    if (kind == PutKind::Set && !stored.IsObject()) throw ScriptError(objectRequired);
    const IndexNumbers numbers(indices);
    if (!target.IsArray()) throw ScriptError(typeMismatch, name);  // a default property has changed it
    Value& element = target.OwnArray().At(numbers.Span());
    element.Swap(stored);  // what the element held goes after the array is whole again
    return;
  }
  if (!target.IsObject()) throw ScriptError(typeMismatch, name);
  if (target.IsNothing()) throw ScriptError(objectNotSet, name);
  const ObjectRef object(target.AsObject());
  object->Put(Dispatch::defaultMember, indices, value, kind);
}

}  // namespace quarlin::vbs
