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

constexpr std::size_t spaces = 5;

// Where the operands of the innermost procedure lie.
class Places {
 public:
  void Switch(Frame& frame, std::vector<Value>& globals) {
    bases_[static_cast<std::size_t>(Space::Register)] = frame.registers;
    bases_[static_cast<std::size_t>(Space::Parameter)] = frame.registers;
    // Constants are only read; the table holds them beside what is written.
    bases_[static_cast<std::size_t>(Space::Constant)] = const_cast<Value*>(frame.code->constants.data());
    bases_[static_cast<std::size_t>(Space::Global)] = globals.data();
    bases_[static_cast<std::size_t>(Space::Field)] =
        frame.me == nullptr ? nullptr : frame.me->Fields().data();
  }
  Value& operator[](Operand operand) const {
    Value* place = bases_[operand.bits >> Operand::spaceShift] + (operand.bits & Operand::numberMask);
    return place->Is(Kind::Reference) ? place->Place() : *place;
  }
  Value* Register(Operand operand) const { return bases_[0] + operand.bits; }

 private:
  std::array<Value*, spaces> bases_{};
};

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

void Concatenate(Value& place, const Value& left, const Value& right) {
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

bool QuickModulo(Value& place, const Value& left, const Value& right) {
  if (!IsWholeNumber(left) || !IsWholeNumber(right) || right.AsWhole() == 0) return false;
  return StoreWhole(place, BothIntegers(left, right), left.AsWhole() % right.AsWhole());
}

bool QuickIntegerDivide(Value& place, const Value& left, const Value& right) {
  if (!IsWholeNumber(left) || !IsWholeNumber(right) || right.AsWhole() == 0) return false;
  const std::int64_t result = left.AsWhole() / right.AsWhole();
  return result == static_cast<std::int32_t>(result) && StoreWhole(place, BothIntegers(left, right), result);
}

bool QuickDivide(Value& place, const Value& left, const Value& right) {
  const auto real = [](const Value& value) {
    return value.Is(Kind::Double) ? value.AsReal() : static_cast<double>(value.AsWhole());
  };
  if (!(IsWholeNumber(left) || left.Is(Kind::Double)) || !(IsWholeNumber(right) || right.Is(Kind::Double)))
    return false;
  const double divisor = real(right);
  if (divisor == 0) return false;
  const double result = real(left) / divisor;
  if (!(result <= std::numeric_limits<double>::max() && result >= -std::numeric_limits<double>::max()))
    return false;
  place.SetReal(Kind::Double, result);
  return true;
}

Operator OperatorOf(Op op) {
  return static_cast<Operator>(static_cast<int>(op) - static_cast<int>(Op::Add));
}

// The element of a one-dimensional array, or null where the general way has to be taken.
Value* QuickElement(const Value& array, const Value& index) {
  if (!array.IsArray() || !IsWholeNumber(index)) return nullptr;
  ArrayBody& body = array.AsArray();
  const auto place = static_cast<std::uint64_t>(index.AsWhole());
  if (body.Dimensions() != 1 || place >= body.Items().size()) return nullptr;
  return &body.Items()[place];
}

template <class Compare>
bool Holds(const Instruction& instruction, const Places& at, Operator operation, Compare compare) {
  const Value& left = at[instruction.b];
  const Value& right = at[instruction.c];
  const int quick = QuickCompare(left, right, compare);
  if (quick >= 0) return quick != 0;
  return IsTrue(Apply(operation, left, right, static_cast<Origin>(instruction.count)));
}

bool Fits(const Value& selected, const Value& choice, const Instruction& instruction) {
  const int quick = QuickCompare(selected, choice, std::equal_to<>());
  if (quick >= 0) return quick != 0;
  return FitsCase(selected, choice, static_cast<Origin>(instruction.count));
}

bool QuickNext(Value& counter, const Value* bounds, bool& again) {
  if (!IsWholeNumber(counter) || !IsWholeNumber(bounds[0]) || !IsWholeNumber(bounds[1])) return false;
  const std::int64_t step = bounds[1].AsWhole();
  const std::int64_t next = counter.AsWhole() + step;
  StoreWhole(counter, counter.Is(Kind::Integer) && bounds[1].Is(Kind::Integer), next);
  again = step >= 0 ? next <= bounds[0].AsWhole() : next >= bounds[0].AsWhole();
  return true;
}

void ElementPlace(Value& reg, Value& array, Arguments indices) {
  // The indices are plain, so nothing runs that could change the array in between.
  Value element = array.IsArray() ? Value::To(array.OwnArray().At(IndexNumbers(indices).Span()))
                                  : IndexValue(array, indices);
  reg.Swap(element);
}

void SetObject(Value& place, const Value& value) {
  if (!value.IsObject()) throw ScriptError(objectRequired);
  place = value;
}

}  // namespace

void Machine::CopyByValue(const Code& code, Value* registers, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (code.byValue[i] && registers[i].Is(Kind::Reference)) registers[i] = Value(registers[i].Place());
  }
}

// The innermost procedures, until the one that was entered last before the call has returned. One
// instruction after the other; `frame->instruction` is kept true wherever something can be thrown.
Value Machine::Loop(std::size_t entry) {
  Frame* frame = &frames_.Back();
  const Instruction* at = frame->instruction;
  Places place;
  place.Switch(*frame, globals_);
  const auto entered = [&] {
    frame = &frames_.Back();
    at = frame->instruction;
    place.Switch(*frame, globals_);
    if (effort::Step()) LookAround();
  };
  const auto jumpBack = [&](std::uint32_t target) {
    at = frame->code->instructions.data() + target;
    if (effort::Step()) LookAround();
  };
  const auto jump = [&](std::uint32_t target) { at = frame->code->instructions.data() + target; };
  Instruction stopped{};
  for (;;) {
    const Instruction* doing = at;
    frame->instruction = at++;
  perform:
    const Instruction& now = *doing;
    switch (now.op) {
      case Op::Load:
        place[now.a] = place[now.b];
        break;
      case Op::Take:
        place[now.a] = std::move(place[now.b]);
        break;
      case Op::Let:
      case Op::LetTaken: {
        Value& target = place[now.a];
        Value& source = place[now.b];
        if (target.IsArray() && target.AsArray().Fixed()) throw ScriptError(typeMismatch);
        if (source.IsObject() || source.IsArray()) {
          Value plain = LetValue(source);
          target.Swap(plain);
          if (now.op == Op::LetTaken) source.Clear();
        } else if (now.op == Op::LetTaken) {
          target = std::move(source);
        } else {
          target = source;
        }
        break;
      }
      case Op::Set:
        SetObject(place[now.a], place[now.b]);
        break;
      case Op::SetTaken:
        if (!place[now.b].IsObject()) throw ScriptError(objectRequired);
        place[now.a] = std::move(place[now.b]);
        break;
      case Op::Refer:
        *place.Register(now.a) = Value::To(place[now.b]);
        break;
      case Op::Clear:
        for (std::size_t i = 0; i < now.count; ++i) place.Register(now.a)[i].Clear();
        break;

      case Op::Add:
        if (!QuickArithmetic(place[now.a], place[now.b], place[now.c], std::plus<>(), std::plus<>())) {
          place[now.a] = Apply(Operator::Add, place[now.b], place[now.c]);
        }
        break;
      case Op::Subtract:
        if (!QuickArithmetic(place[now.a], place[now.b], place[now.c], std::minus<>(), std::minus<>())) {
          place[now.a] = Apply(Operator::Subtract, place[now.b], place[now.c]);
        }
        break;
      case Op::Multiply:
        if (!QuickArithmetic(place[now.a], place[now.b], place[now.c], std::multiplies<>(),
                             std::multiplies<>())) {
          place[now.a] = Apply(Operator::Multiply, place[now.b], place[now.c]);
        }
        break;
      case Op::Divide:
        if (!QuickDivide(place[now.a], place[now.b], place[now.c])) {
          place[now.a] = Apply(Operator::Divide, place[now.b], place[now.c]);
        }
        break;
      case Op::IntegerDivide:
        if (!QuickIntegerDivide(place[now.a], place[now.b], place[now.c])) {
          place[now.a] = Apply(Operator::IntegerDivide, place[now.b], place[now.c]);
        }
        break;
      case Op::Modulo:
        if (!QuickModulo(place[now.a], place[now.b], place[now.c])) {
          place[now.a] = Apply(Operator::Modulo, place[now.b], place[now.c]);
        }
        break;
      case Op::Concatenate:
        Concatenate(place[now.a], place[now.b], place[now.c]);
        break;
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
        place[now.a] = Apply(OperatorOf(now.op), place[now.b], place[now.c], static_cast<Origin>(now.count));
        break;
      case Op::Negate:
        place[now.a] = Negate(place[now.b]);
        break;
      case Op::Plus:
        place[now.a] = place[now.b].IsString() ? Value::Double(ToDouble(place[now.b])) : Plain(place[now.b]);
        break;
      case Op::Not:
        place[now.a] = Not(place[now.b]);
        break;

      case Op::Jump:
        jump(now.d);
        break;
      case Op::JumpUnless:
        if (!IsTrue(place[now.b])) jump(now.d);
        break;
      case Op::JumpIf:
        if (IsTrue(place[now.b])) jump(now.d);
        break;
      case Op::JumpIfEqual:
        if (Fits(place[now.b], place[now.c], now)) jump(now.d);
        break;
      case Op::JumpUnlessEqual:
        if (!Holds(now, place, Operator::Equal, std::equal_to<>())) jump(now.d);
        break;
      case Op::JumpUnlessNotEqual:
        if (!Holds(now, place, Operator::NotEqual, std::not_equal_to<>())) jump(now.d);
        break;
      case Op::JumpUnlessLess:
        if (!Holds(now, place, Operator::Less, std::less<>())) jump(now.d);
        break;
      case Op::JumpUnlessGreater:
        if (!Holds(now, place, Operator::Greater, std::greater<>())) jump(now.d);
        break;
      case Op::JumpUnlessLessEqual:
        if (!Holds(now, place, Operator::LessEqual, std::less_equal<>())) jump(now.d);
        break;
      case Op::JumpUnlessGreaterEqual:
        if (!Holds(now, place, Operator::GreaterEqual, std::greater_equal<>())) jump(now.d);
        break;
      case Op::JumpBack:
        jumpBack(now.d);
        break;

      case Op::IndexOne:
        if (const Value* element = QuickElement(place[now.b], place[now.c])) {
          place[now.a] = *element;
          break;
        }
        place[now.a] = IndexValue(place[now.b], {&place[now.c], 1}, NameAt(now));
        break;
      case Op::Index:
        place[now.a] = IndexValue(place[now.b], {place.Register(now.c), now.count}, NameAt(now));
        break;
      case Op::ElementPlace:
        ElementPlace(*place.Register(now.a), place[now.b], {place.Register(now.c), now.count});
        break;
      case Op::PutIndexOne: {
        Value& array = place[now.a];
        const Value& value = place[now.b];
        if (array.IsArray() && array.AsArray().References() == 1 && !value.IsObject() && !value.IsArray()) {
          if (Value* element = QuickElement(array, place[now.c])) {
            *element = value;
            break;
          }
        }
        PutIndexed(array, {&place[now.c], 1}, value, PutKind::Let, NameAt(now));
        break;
      }
      case Op::PutIndex:
      case Op::SetIndex:
        PutIndexed(place[now.a], {place.Register(now.c), now.count}, place[now.b],
                   now.op == Op::PutIndex ? PutKind::Let : PutKind::Set, NameAt(now));
        break;
      case Op::PutBack:
        PutBack(place[now.a], place.Register(now.c), now.count, place[now.b]);
        break;

      case Op::GetMember:
      case Op::CallMember: {
        Value direct;
        Value* arguments = now.op == Op::GetMember ? Top() : place.Register(now.c);
        if (GetMember(place[now.b], frame->code->sites[now.d], arguments, now.count, now.a, direct)) {
          entered();
        } else {
          place[now.a].Swap(direct);
        }
        break;
      }
      case Op::PutMember:
      case Op::SetMember:
        if (PutMember(place[now.b], frame->code->sites[now.d], place.Register(now.c), now.count, place[now.a],
                      now.op == Op::PutMember ? PutKind::Let : PutKind::Set)) {
          entered();
        }
        break;
      case Op::CallProcedure:
        Enter(now.d, place.Register(now.c), now.count, nullptr, now.a);
        entered();
        break;
      case Op::CallMethod:
        Enter(now.d, place.Register(now.c), now.count, frame->me, now.a);
        entered();
        break;
      case Op::CallBuiltin: {
        Value result = CallBuiltin(symbols_.BuiltinAt(now.d), {place.Register(now.c), now.count});
        place[now.a].Swap(result);
        break;
      }
      case Op::CallLate: {
        Value direct;
        if (CallLate(frame->code->sites[now.d], place.Register(now.c), now.count, now.a, direct)) {
          entered();
        } else {
          place[now.a].Swap(direct);
        }
        break;
      }
      case Op::ReadLate: {
        Value found = ReadLate(frame->code->sites[now.d]);
        place[now.a].Swap(found);
        break;
      }
      case Op::Raise:
        throw ScriptError(static_cast<std::int32_t>(place[now.b].AsWhole()), frame->code->sites[now.d].name);

      case Op::ReadyArray: {
        Value array =
            Value::Array(ArrayBody::Make(frame->code->arrays[now.d], !frame->code->arrays[now.d].empty()));
        place[now.a].Swap(array);
        break;
      }
      case Op::ReDim:
      case Op::ReDimPreserve:
        Redimension(place[now.a], place.Register(now.c), now.count, now.op == Op::ReDimPreserve);
        break;
      case Op::Erase:
        Erase(place[now.a]);
        break;
      case Op::New: {
        Value made = MakeObject(frame->code->sites[now.d]);
        place[now.a].Swap(made);
        break;
      }
      case Op::Me:
        place[now.a] = Value::Object(frame->me);
        break;

      case Op::ForStart:
        if (!StartCounting(place[now.a], place[now.b], place.Register(now.c))) jump(now.d);
        break;
      case Op::ForNext: {
        bool again = false;
        Value& counter = place[now.a];
        const Value* bounds = place.Register(now.c);
        if (!QuickNext(counter, bounds, again)) again = Count(counter, bounds);
        if (again) jumpBack(now.d);
        break;
      }
      case Op::EachStart:
        *place.Register(now.a) = Walk::Over(place[now.b]);
        break;
      case Op::EachNext: {
        const Value& walk = *place.Register(now.c);
        if (!walk.IsObject() || !static_cast<Walk*>(walk.AsObject())->Next(place[now.a])) jump(now.d);
        break;
      }

      case Op::ResumeNext:
        frame->resumeNext = true;
        err_->Clear();
        break;
      case Op::GoToZero:
        frame->resumeNext = false;
        err_->Clear();
        break;
      case Op::Execute:
      case Op::ExecuteGlobal:
      case Op::Eval: {
        Value result = Execute(now.op, place[now.b]);
        place[now.a].Swap(result);
        break;
      }
      case Op::Reconsider:
        if (!Reconsider(*frame)) break;
        at = frame->instruction;
        place.Switch(*frame, globals_);
        break;
      case Op::GetRef:
        place[now.a] = ReferenceTo(place[now.b]);
        break;
      case Op::Return: {
        const Operand target = frame->result;
        const bool wanted = !frame->throwsResultAway;
        Value result = Pop();
        if (frames_.Size() == entry) return result;
        frame = &frames_.Back();
        at = frame->instruction + 1;
        place.Switch(*frame, globals_);
        if (wanted) place[target].Swap(result);
        break;
      }
      case Op::Stop:
        stopped = StopHere();
        doing = &stopped;
        goto perform;
    }
  }
}

}  // namespace quarlin::vbs
