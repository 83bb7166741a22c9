// SPDX-License-Identifier: GPL-3.0-or-later
#include <utility>

#include "script/values/array.h"
#include "script/values/conversions.h"
#include "script/values/indexing.h"
#include "script/vbscript/machine/for_loop.h"
#include "script/vbscript/machine/machine_calls.h"

namespace quarlin::vbs {
namespace {

void ElementPlace(Value& reg, Value& array, Arguments indices) {
  // The indices are plain, so nothing runs that could change the array in between.
  Value element = array.IsArray() ? Value::To(array.OwnArray().At(IndexNumbers(indices).Span()))
                                  : IndexValue(array, indices);
  reg.Swap(element);
}

// Plus of a text is its number.
Value Unsigned(const Value& value) {
  return value.IsString() ? Value::Double(ToDouble(value)) : Plain(value);
}

}  // namespace

// Each does what bytecode.h says of it; what can be thrown names the instruction that the frame is at.
void Machine::Perform(Op op, const Instruction& now) {
  Frame& frame = frames_.Back();
  const auto place = [&frame](Operand operand) -> Value& { return frame.At(operand); };
  const auto reg = [&frame](Operand operand) { return frame.Registers() + operand.number; };
  switch (op) {
    case Op::Power:
    case Op::Equal:
    case Op::NotEqual:
    case Op::Less:
    case Op::Greater:
    case Op::LessEqual:
    case Op::GreaterEqual:
    case Op::Is:
    case Op::And:
    case Op::Or:
    case Op::Xor:
    case Op::Eqv:
    case Op::Imp:
      place(now.a) = Apply(OperatorOf(op), place(now.b), place(now.c), static_cast<Origin>(now.count));
      return;
    case Op::Negate:
      place(now.a) = Negate(place(now.b));
      return;
    case Op::Plus:
      place(now.a) = Unsigned(place(now.b));
      return;
    case Op::Not:
      place(now.a) = Not(place(now.b));
      return;

    case Op::Index:
      place(now.a) = IndexValue(place(now.b), {reg(now.c), now.count}, NameAt(now));
      return;
    case Op::ElementPlace:
      ElementPlace(*reg(now.a), place(now.b), {reg(now.c), now.count});
      return;
    case Op::PutIndex:
      PutIndexed(place(now.a), {reg(now.c), now.count}, place(now.b), PutKind::Let, NameAt(now));
      return;
    case Op::SetIndex:
      PutIndexed(place(now.a), {reg(now.c), now.count}, place(now.b), PutKind::Set, NameAt(now));
      return;
    case Op::PutBack:
      PutBack(place(now.a), reg(now.c), now.count, place(now.b));
      return;
    case Op::ReadyArray: {
      const auto& bounds = frame.code->arrays[now.d];
      place(now.a) = Value::Array(ArrayBody::Make(bounds, !bounds.empty()));
      return;
    }
    case Op::ReDim:
      Redimension(place(now.a), reg(now.c), now.count, false);
      return;
    case Op::ReDimPreserve:
      Redimension(place(now.a), reg(now.c), now.count, true);
      return;
    case Op::Erase:
      Erase(place(now.a));
      return;

    case Op::ReadLate:
      place(now.a) = ReadLate(frame.code->sites[now.d], now.count != 0);
      return;
    case Op::PlaceLate:
      *reg(now.a) = PlaceLate(frame.code->sites[now.d]);
      return;
    case Op::ArgumentLate:
      *reg(now.a) = ArgumentLate(frame.code->sites[now.d]);
      return;
    case Op::New:
      place(now.a) = MakeObject(frame.code->sites[now.d]);
      return;
    case Op::Me:
      place(now.a) = Value::Object(frame.me);
      return;
    case Op::GetRef:
      place(now.a) = ReferenceTo(place(now.b));
      return;
    case Op::EachStart:
      *reg(now.a) = Walk::Over(place(now.b));
      return;

    case Op::ResumeNext:
      frame.resumeNext = true;
      err_->Clear();
      return;
    case Op::GoToZero:
      frame.resumeNext = false;
      err_->Clear();
      return;
    case Op::Raise:
      throw ScriptError(static_cast<std::int32_t>(place(now.b).AsWhole()), frame.code->sites[now.d].name);
    case Op::Execute:
    case Op::ExecuteGlobal:
    case Op::Eval:
      place(now.a) = Execute(op, place(now.b));
      return;
    default:
      __builtin_unreachable();
  }
}

}  // namespace quarlin::vbs
