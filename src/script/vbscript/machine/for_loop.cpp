// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/machine/for_loop.h"

#include <utility>

#include "script/values/conversions.h"
#include "script/values/operators.h"

namespace quarlin::vbs {
namespace {

Value NumberFor(const Value& given) {
  Value value = Plain(given);
  switch (value.GetKind()) {
    case Kind::Empty:
      return Value::Integer(0);
    case Kind::Boolean:
      return Value::Integer(static_cast<std::int16_t>(value.AsWhole()));
    case Kind::String:
      return Value::Double(ToDouble(value));
    case Kind::Null:
      throw ScriptError(invalidUseOfNull);
    case Kind::Array:
    case Kind::Error:
      throw ScriptError(typeMismatch);
    default:
      return value;
  }
}

bool InRange(const Value& counter, const Value* bounds) {
  const bool down = IsTrue(Apply(Operator::Less, bounds[1], Value::Integer(0)));
  return IsTrue(Apply(down ? Operator::GreaterEqual : Operator::LessEqual, counter, bounds[0]));
}

}  // namespace

bool StartCounting(Value& counter, const Value& from, Value* bounds) {
  try {
    Value first = NumberFor(from);
    bounds[0] = NumberFor(bounds[0]);
    bounds[1] = NumberFor(bounds[1]);
    counter.Swap(first);
  } catch (...) {
    bounds[0].Clear();
    bounds[1].Clear();
    throw;
  }
  return InRange(counter, bounds);
}

bool Count(Value& counter, const Value* bounds) {
  if (bounds[0].IsEmpty()) throw ScriptError(forLoopNotInitialized);
  Value next = Apply(Operator::Add, counter, bounds[1]);
  counter.Swap(next);
  return InRange(counter, bounds);
}

Value Walk::Over(const Value& collection) {
  Ref<Walk> walk(new Walk);
  if (collection.IsArray()) {
    walk->array_ = ArrayRef(&collection.AsArray());
    return Value::Object(walk.Get());
  }
  if (!collection.IsObject() || collection.IsNothing()) throw ScriptError(notACollection);
  walk->collection_ = ObjectRef(collection.AsObject());
  walk->enumerator_ = walk->collection_->Enumerate();
  if (!walk->enumerator_) throw ScriptError(notACollection);
  return Value::Object(walk.Get());
}

bool Walk::Next(Value& item) {
  if (array_) {
    if (next_ >= array_->Items().size()) return false;
    Value copy = array_->Items()[next_++];
    item.Swap(copy);
    return true;
  }
  auto next = enumerator_->Next();
  Value value = next ? std::move(*next) : Value();
  item.Swap(value);
  return next.has_value();
}

}  // namespace quarlin::vbs
