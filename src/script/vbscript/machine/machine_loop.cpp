// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <utility>

#include "script/values/array.h"
#include "script/values/comparison.h"
#include "script/values/conversions.h"
#include "script/values/effort.h"
#include "script/values/indexing.h"
#include "script/vbscript/machine/arithmetic.h"
#include "script/vbscript/machine/for_loop.h"
#include "script/vbscript/machine/machine_calls.h"

namespace quarlin::vbs {
namespace {

Value JoinNumber(std::u16string_view text, std::int64_t number) {
  std::array<char, 24> digits;
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  const auto count = static_cast<std::size_t>(end - digits.data());
  std::array<char16_t, 24> wide;
  std::copy_n(digits.begin(), count, wide.begin());
  TextBody* joined = TextBody::Make(text, text.size() + count);
  joined->Append({wide.data(), count});
  return Value::Adopt(joined);
}

[[gnu::noinline]] void Concatenate(Value& place, const Value& left, const Value& right) {
  if (&place == &left && place.IsString()) {
    if (right.IsString()) return place.AppendText(right.AsText());
    if (right.Is(Kind::Integer) || right.Is(Kind::Long)) return place.AppendText(ToText(right));
  }
  if (left.IsString() && right.IsString()) {
    const std::u16string_view a = left.AsText();
    const std::u16string_view b = right.AsText();
    TextBody* joined = TextBody::Make(a, a.size() + b.size());
    joined->Append(b);
    place = Value::Adopt(joined);
    return;
  }
  place = left.IsString() && IsWholeNumber(right) ? JoinNumber(left.AsText(), right.AsWhole())
                                                  : Apply(Operator::Concatenate, left, right);
}

template <auto quick>
[[gnu::noinline]] void CalculateInGeneral(const Instruction& now, const Frame& frame, Operator operation) {
  Value result;
  if (!quick(result, frame.At(now.b), frame.At(now.c))) {
    result = Apply(operation, frame.At(now.b), frame.At(now.c));
  }
  frame.At(now.a).Swap(result);
}

// With what References refer to, which is the commonest reason to come here.
template <auto quick>
[[gnu::noinline]] void CalculateAnyway(const Instruction& now, const Frame& frame, Operator operation) {
  if (quick(frame.At(now.a), frame.At(now.b), frame.At(now.c))) return;
  CalculateInGeneral<quick>(now, frame, operation);
}

// With the operands as they lie there, which is nearly always enough.
template <auto quick>
[[gnu::always_inline]] inline void Calculate(const Instruction& now, const Frame& frame, Operator operation) {
  if (quick(frame.Raw(now.a), frame.Raw(now.b), frame.Raw(now.c))) return;
  CalculateAnyway<quick>(now, frame, operation);
}

// The element of a one-dimensional array, or null where the general way has to be taken.
Value* QuickElement(ArrayBody& body, const Value& index) {
  if (!IsWholeNumber(index)) return nullptr;
  const auto place = static_cast<std::uint64_t>(index.AsWhole());
  if (body.Dimensions() != 1 || place >= body.Items().size()) return nullptr;
  return &body.Items()[place];
}

Value* QuickElement(const Value& array, const Value& index) {
  return array.IsArray() ? QuickElement(array.AsArray(), index) : nullptr;
}

bool QuickPut(const Value& array, const Value& index, const Value& value) {
  if (!array.IsArray() || value.IsObject() || value.IsArray()) return false;
  ArrayBody& body = array.AsArray();
  if (body.References() != 1) return false;
  Value* element = QuickElement(body, index);
  if (element == nullptr) return false;
  *element = value;
  return true;
}

template <class Compare>
[[gnu::noinline]] bool HoldsAnyway(const Instruction& now, const Frame& frame, Operator operation,
                                   Compare compare) {
  const Value& left = frame.At(now.b);
  const Value& right = frame.At(now.c);
  const int quick = QuickCompare(left, right, compare);
  if (quick >= 0) return quick != 0;
  return IsTrue(Apply(operation, left, right, static_cast<Origin>(now.count)));
}

// Whether a Case is the one that was selected.
bool Fits(const Instruction& now, const Frame& frame) {
  const Value& selected = frame.At(now.b);
  const Value& choice = frame.At(now.c);
  const int quick = QuickCompare(selected, choice, std::equal_to<>());
  if (quick >= 0) return quick != 0;
  return FitsCase(selected, choice, static_cast<Origin>(now.count));
}

template <class Compare>
[[gnu::always_inline]] inline bool Holds(const Instruction& now, const Frame& frame, Operator operation,
                                         Compare compare) {
  const Value& left = frame.Raw(now.b);
  const Value& right = frame.Raw(now.c);
  if (AreWholeNumbers(Width(left, right))) [[likely]]
    return compare(left.AsWhole(), right.AsWhole());
  return HoldsAnyway(now, frame, operation, compare);
}

bool Next(Value& counter, const Value* bounds) {
  const unsigned width = Width(counter, bounds[1]);
  if (!AreWholeNumbers(width) || !IsWholeNumber(bounds[0])) return Count(counter, bounds);
  const std::int64_t step = bounds[1].AsWhole();
  const std::int64_t next = counter.AsWhole() + step;
  StoreWhole(counter, width, next);
  return step >= 0 ? next <= bounds[0].AsWhole() : next >= bounds[0].AsWhole();
}

bool NextItem(const Value& walk, Value& item) {
  return walk.IsObject() && static_cast<Walk*>(walk.AsObject())->Next(item);
}

[[gnu::noinline]] void LetPlain(Value& target, const Value& source) {
  Value plain = LetValue(source);
  target.Swap(plain);
}

bool IsFixedArray(const Value& value) {
  return value.IsArray() && value.AsArray().Fixed();
}

void Let(Value& target, const Value& source) {
  if (IsFixedArray(target)) throw ScriptError(typeMismatch);
  if (source.GetKind() >= Kind::Array) return LetPlain(target, source);
  target = source;
}

void LetTaken(Value& target, Value& source) {
  if (IsFixedArray(target)) throw ScriptError(typeMismatch);
  if (source.GetKind() < Kind::Array) {
    target = std::move(source);
  } else {
    LetPlain(target, source);
    source.Clear();
  }
}

// Copies what lies there, where nothing has to be counted or followed.
[[gnu::always_inline]] inline bool QuickCopy(const Instruction& now, const Frame& frame) {
  Value& target = frame.Raw(now.a);
  const Value& source = frame.Raw(now.b);
  if (!IsBare(target) || !IsBare(source)) [[unlikely]]
    return false;
  std::construct_at(&target, source);
  return true;
}

void SetObject(Value& place, const Value& value) {
  if (!value.IsObject()) throw ScriptError(objectRequired);
  place = value;
}

[[gnu::noinline]] void IndexInto(Value& target, const Value& array, Arguments indices,
                                 std::u16string_view name) {
  target = IndexValue(array, indices, name);
}

}  // namespace

// The innermost procedures, until all above `entry` have returned. One instruction after the other;
// `frame->instruction` is kept true wherever something can be thrown. What scripts do all the time is done
// here, the rest by Perform: the fewer objects this function has, the more of `this`, `frame` and `at`
// stays in the processor's registers.
Value Machine::Loop(const Frame* entry) {
  Frame* frame = &frames_.Back();
  const Instruction* at = frame->instruction;
  const auto place = [&frame](Operand operand) -> Value& { return frame->At(operand); };
  const auto reg = [&frame](Operand operand) { return frame->Registers() + operand.number; };
  const auto jumpTo = [&](std::uint32_t target) { at = frame->code->instructions.data() + target; };
  const auto look = [this] {
    if (effort::Step()) LookAround();
  };
  const auto enter = [&] {
    frame = &frames_.Back();
    at = frame->instruction;
    look();
  };
  // The head, where every instruction begins, lies in one line of the processor's cache.
  asm volatile(".p2align 6");
  for (;;) {
    Op op = at->op;
    frame->instruction = at;
  perform:
    const Instruction& now = *at;
    switch (op) {
      case Op::Load:
        if (!QuickCopy(now, *frame)) place(now.a) = place(now.b);
        break;
      case Op::Take:
        if (!QuickCopy(now, *frame)) place(now.a) = std::move(place(now.b));
        break;
      case Op::Let:
        if (!QuickCopy(now, *frame)) Let(place(now.a), place(now.b));
        break;
      case Op::LetTaken:
        if (!QuickCopy(now, *frame)) LetTaken(place(now.a), place(now.b));
        break;
      case Op::Set:
        SetObject(place(now.a), place(now.b));
        break;
      case Op::SetTaken:
        if (!place(now.b).IsObject()) throw ScriptError(objectRequired);
        place(now.a) = std::move(place(now.b));
        break;
      case Op::Refer:
        *reg(now.a) = Value::To(place(now.b));
        break;
      case Op::Clear:
        for (std::size_t i = 0; i < now.count; ++i) reg(now.a)[i].Clear();
        break;

      case Op::Add:
        Calculate<QuickAdd>(now, *frame, Operator::Add);
        break;
      case Op::Subtract:
        Calculate<QuickSubtract>(now, *frame, Operator::Subtract);
        break;
      case Op::Multiply:
        Calculate<QuickMultiply>(now, *frame, Operator::Multiply);
        break;
      case Op::Divide:
        Calculate<QuickDivide>(now, *frame, Operator::Divide);
        break;
      case Op::IntegerDivide:
        Calculate<QuickIntegerDivide>(now, *frame, Operator::IntegerDivide);
        break;
      case Op::Modulo:
        Calculate<QuickModulo>(now, *frame, Operator::Modulo);
        break;
      case Op::Concatenate:
        Concatenate(place(now.a), place(now.b), place(now.c));
        break;

      case Op::Jump:
        jumpTo(now.d);
        continue;
      case Op::JumpUnless:
        if (IsTrue(place(now.b))) break;
        jumpTo(now.d);
        continue;
      case Op::JumpIf:
        if (!IsTrue(place(now.b))) break;
        jumpTo(now.d);
        continue;
      case Op::JumpIfEqual:
        if (!Fits(now, *frame)) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessEqual:
        if (Holds(now, *frame, Operator::Equal, std::equal_to<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessNotEqual:
        if (Holds(now, *frame, Operator::NotEqual, std::not_equal_to<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessLess:
        if (Holds(now, *frame, Operator::Less, std::less<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessGreater:
        if (Holds(now, *frame, Operator::Greater, std::greater<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessLessEqual:
        if (Holds(now, *frame, Operator::LessEqual, std::less_equal<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpUnlessGreaterEqual:
        if (Holds(now, *frame, Operator::GreaterEqual, std::greater_equal<>())) break;
        jumpTo(now.d);
        continue;
      case Op::JumpBack:
        look();
        jumpTo(now.d);
        continue;
      case Op::ForStart:
        if (StartCounting(place(now.a), place(now.b), reg(now.c))) break;
        jumpTo(now.d);
        continue;
      case Op::ForNext:
        if (!Next(place(now.a), reg(now.c))) break;
        look();
        jumpTo(now.d);
        continue;

      case Op::EachNext:
        if (NextItem(*reg(now.c), place(now.a))) break;
        jumpTo(now.d);
        continue;

      case Op::IndexOne:
        if (const Value* element = QuickElement(place(now.b), place(now.c))) {
          place(now.a) = *element;
        } else {
          IndexInto(place(now.a), place(now.b), {&place(now.c), 1}, NameAt(now));
        }
        break;
      case Op::PutIndexOne:
        if (!QuickPut(place(now.a), place(now.c), place(now.b))) {
          PutIndexed(place(now.a), {&place(now.c), 1}, place(now.b), PutKind::Let, NameAt(now));
        }
        break;

      case Op::GetMember:
        if (!GetMember(place(now.b), frame->code->sites[now.d], Top(), 0, reg(now.a))) break;
        enter();
        continue;
      case Op::CallMember:
      case Op::RunMember:
        if (!GetMember(place(now.b), frame->code->sites[now.d], reg(now.c), now.count,
                       op == Op::CallMember ? reg(now.a) : nullptr)) {
          break;
        }
        enter();
        continue;
      case Op::PutMember:
      case Op::SetMember:
        if (!PutMember(place(now.b), frame->code->sites[now.d], reg(now.c), now.count, place(now.a),
                       op == Op::PutMember ? PutKind::Let : PutKind::Set)) {
          break;
        }
        enter();
        continue;
      case Op::CallProcedure:
        Enter(now.d, reg(now.c), now.count, nullptr, reg(now.a));
        enter();
        continue;
      case Op::RunProcedure:
        Enter(now.d, reg(now.c), now.count, nullptr, nullptr);
        enter();
        continue;
      case Op::CallMethod:
        Enter(now.d, reg(now.c), now.count, frame->me, reg(now.a));
        enter();
        continue;
      case Op::RunMethod:
        Enter(now.d, reg(now.c), now.count, frame->me, nullptr);
        enter();
        continue;
      case Op::CallLate:
      case Op::RunLate:
        if (!CallLate(frame->code->sites[now.d], reg(now.c), now.count,
                      op == Op::CallLate ? reg(now.a) : nullptr)) {
          break;
        }
        enter();
        continue;
      case Op::CallBuiltin:
        CallBuiltin(symbols_.BuiltinAt(now.d), {reg(now.c), now.count}, place(now.a));
        break;
      case Op::Return: {
        Value* const target = frame->result;
        Value result = Leave(*frame);
        if (frame == entry) return result;
        --frame;
        at = frame->instruction;
        if (target != nullptr) target->Swap(result);
        break;
      }

      case Op::Reconsider:
        if (!Reconsider(*frame)) break;
        at = frame->instruction;
        continue;
      case Op::Stop:
        op = StopHere();
        goto perform;

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
      case Op::Negate:
      case Op::Plus:
      case Op::Not:
      case Op::Index:
      case Op::ElementPlace:
      case Op::PutIndex:
      case Op::SetIndex:
      case Op::PutBack:
      case Op::ReadLate:
      case Op::PlaceLate:
      case Op::ArgumentLate:
      case Op::Raise:
      case Op::ReadyArray:
      case Op::ReDim:
      case Op::ReDimPreserve:
      case Op::Erase:
      case Op::New:
      case Op::Me:
      case Op::EachStart:
      case Op::ResumeNext:
      case Op::GoToZero:
      case Op::Execute:
      case Op::ExecuteGlobal:
      case Op::Eval:
      case Op::GetRef:
        Perform(op, now);
        break;
      default:
        __builtin_unreachable();
    }
    ++at;
  }
}

}  // namespace quarlin::vbs
