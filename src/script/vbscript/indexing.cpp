#include "script/vbscript/indexing.h"

#include <array>

#include "script/vbscript/array.h"
#include "script/vbscript/conversions.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t mostIndices = 60;

}  // namespace

Value& ElementOf(ArrayBody& array, Arguments indices) {
  std::array<std::int32_t, mostIndices> numbers;
  if (indices.size() > mostIndices) throw ScriptError(subscriptOutOfRange);
  for (std::size_t i = 0; i < indices.size(); ++i) numbers[i] = ToLong(indices[i].Followed());
  return array.At({numbers.data(), indices.size()});
}

Value LetValue(const Value& value) {
  if (value.IsObject()) return Plain(value);
  if (value.IsArray() && value.AsArray().Fixed()) return Value::Array(value.AsArray().Copy(false));
  return value;
}

Value IndexValue(const Value& target, Arguments indices, std::u16string_view name) {
  if (target.IsArray()) return ElementOf(target.AsArray(), indices);
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
    Value& element = ElementOf(target.OwnArray(), indices);
    element.Swap(stored);  // what the element held goes after the array is whole again
    return;
  }
  if (!target.IsObject()) throw ScriptError(typeMismatch, name);
  if (target.IsNothing()) throw ScriptError(objectNotSet, name);
  const ObjectRef object(target.AsObject());
  object->Put(Dispatch::defaultMember, indices, value, kind);
}

}  // namespace quarlin::vbs
