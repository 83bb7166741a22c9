// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <utility>

#include "script/vbscript/compiler/compiler.h"

namespace quarlin::vbs {

using ast::Expression;
using ast::ExpressionKind;

namespace {

bool IsComparison(Operator operation) {
  return operation >= Operator::Equal && operation <= Operator::GreaterEqual;
}

// A negative number is a literal too.
bool IsLiteral(const Expression& expression) {
  if (expression.kind != ExpressionKind::Negate) return expression.kind == ExpressionKind::Literal;
  const Expression& negated = *expression.operands[0];
  const Kind kind = negated.value.GetKind();
  return negated.kind == ExpressionKind::Literal && kind >= Kind::Integer && kind <= Kind::Double;
}

Origin OriginOf(const Expression& binary) {
  if (IsLiteral(*binary.operands[1])) return Origin::LiteralRight;
  return IsLiteral(*binary.operands[0]) ? Origin::LiteralLeft : Origin::Variable;
}

std::size_t ArgumentCount(const Expression* call) {
  return call == nullptr ? 0 : call->operands.size() - 1;
}

}  // namespace

Operand Compiler::Destination(std::optional<Operand> into) {
  return into ? *into : Operand::In(Space::Register, out_.Take());
}

Operand Compiler::Compile(const Expression& expression, std::optional<Operand> into) {
  switch (expression.kind) {
    case ExpressionKind::Literal:
      return out_.Constant(expression.value);
    case ExpressionKind::Name:
      return NameValue(expression, into);
    case ExpressionKind::Me: {
      const Operand place = Destination(into);
      out_.Emit(Op::Me, place);
      out_.MayHoldObject(place);
      return place;
    }
    case ExpressionKind::Member:
      return MemberValue(expression, into);
    case ExpressionKind::Call:
      return Call(expression, into);
    case ExpressionKind::Omitted:
      return out_.Constant(Value::Missing());
    case ExpressionKind::Parenthesis:
      return Compile(*expression.operands[0], into);
    case ExpressionKind::Negate:
      if (IsLiteral(expression)) return out_.Constant(LiteralValue(expression));
      return Unary(Op::Negate, expression, into);
    case ExpressionKind::Plus:
      return Unary(Op::Plus, expression, into);
    case ExpressionKind::Not:
      return Unary(Op::Not, expression, into);
    case ExpressionKind::Binary:
      return Binary(expression, into);
    case ExpressionKind::New: {
      const Operand place = Destination(into);
      out_.Emit(Op::New, place, {}, {}, out_.SiteOf(expression.name));
      out_.MayHoldObject(place);
      return place;
    }
  }
  return {};
}

Operand Compiler::NameValue(const Expression& expression, std::optional<Operand> into) {
  const Resolved resolved = Resolve(expression.name);
  switch (resolved.meaning) {
    case Meaning::Variable:
    case Meaning::Constant:
    case Meaning::Object:
      return resolved.place;
    case Meaning::Unknown: {
      const Operand place = Destination(into);
      out_.Emit(Op::ReadLate, place, {}, {}, out_.SiteOf(expression.name), unit_.optionExplicit ? 1 : 0);
      out_.MayHoldObject(place);
      return place;
    }
    default:
      return CallNamed(resolved, expression, into);
  }
}

Operand Compiler::ObjectOf(const Expression& member) {
  if (!member.operands.empty()) return Compile(*member.operands[0]);
  if (!withObjects_.empty()) return withObjects_.back();
  RaiseAt(invalidReference, u"");
  return out_.Constant(Value::Nothing());
}

std::uint32_t Compiler::MemberSite(const Expression& member) {
  const bool named = !member.operands.empty() && member.operands[0]->kind == ExpressionKind::Name;
  return out_.SiteOf(member.name, named ? member.operands[0]->name : u"");
}

Operand Compiler::MemberValue(const Expression& expression, std::optional<Operand> into) {
  const std::uint32_t mark = out_.Mark();
  const Operand object = ObjectOf(expression);
  out_.BackTo(mark);
  const Operand place = Destination(into);
  out_.Emit(Op::GetMember, place, object, {}, MemberSite(expression));
  out_.MayHoldObject(place);
  return place;
}

Operand Compiler::Unary(Op op, const Expression& expression, std::optional<Operand> into) {
  const std::uint32_t mark = out_.Mark();
  const Operand value = Compile(*expression.operands[0]);
  out_.BackTo(mark);
  const Operand place = Destination(into);
  out_.Emit(op, place, value);
  return place;
}

// Whether evaluating it can run statements of the script, which may change variables.
bool Compiler::MayRunScript(const Expression& expression) {
  switch (expression.kind) {
    case ExpressionKind::Literal:
    case ExpressionKind::Me:
    case ExpressionKind::Omitted:
      return false;
    case ExpressionKind::Name: {
      const Meaning meaning = Resolve(expression.name).meaning;
      return meaning == Meaning::Procedure || meaning == Meaning::Method || meaning == Meaning::HostMember ||
             meaning == Meaning::Unknown;  // perhaps a procedure by then
    }
    case ExpressionKind::Member:
    case ExpressionKind::New:
      return true;
    case ExpressionKind::Call:
      if (expression.operands[0]->kind == ExpressionKind::Name) {
        const Expression& name = *expression.operands[0];
        const Meaning meaning = Resolve(name.name).meaning;
        if (Folded(name.name) == functionName_) return true;
        if (meaning != Meaning::Builtin && meaning != Meaning::Variable) return true;
        break;
      }
      return true;
    default:
      break;
  }
  return std::any_of(expression.operands.begin(), expression.operands.end(),
                     [this](const auto& operand) { return MayRunScript(*operand); });
}

Operand Compiler::Binary(const Expression& expression, std::optional<Operand> into) {
  const std::uint32_t mark = out_.Mark();
  Operand left = Compile(*expression.operands[0]);
  const bool isVariable = !out_.IsResult(left) && left.space != Space::Constant;
  if (isVariable && MayRunScript(*expression.operands[1])) {
    const Operand kept = Operand::In(Space::Register, out_.Take());
    out_.Emit(Op::Load, kept, left);
    out_.MayHoldObject(kept);
    left = kept;
  }
  const Operand right = Compile(*expression.operands[1]);
  out_.BackTo(mark);
  // An object among operands stands for its value; it may stay in its register for a while.
  out_.Taken(left);
  out_.Taken(right);
  const Operand place = Destination(into);
  const auto origin = IsComparison(expression.operation) ? OriginOf(expression) : Origin::Variable;
  out_.Emit(OpOf(expression.operation), place, left, right, 0, static_cast<std::size_t>(origin));
  return place;
}

std::uint32_t Compiler::JumpUnless(const Expression& condition) {
  const std::uint32_t mark = out_.Mark();
  if (condition.kind == ExpressionKind::Parenthesis) return JumpUnless(*condition.operands[0]);
  const bool fused = condition.kind == ExpressionKind::Binary && IsComparison(condition.operation);
  const Operand value = Compile(condition);
  out_.BackTo(mark);
  if (!fused) return out_.Emit(Op::JumpUnless, {}, value);
  // The comparison that was just made becomes the jump itself.
  Instruction& comparison = out_.Made().instructions.back();
  comparison.op = vbs::JumpUnless(comparison.op);
  return out_.Here() - 1;
}

void Compiler::ValueInto(const Expression& expression, std::uint32_t reg) {
  const Operand place = Operand::In(Space::Register, reg);
  const Operand value = Compile(expression, place);
  if (!(value == place)) out_.Emit(Op::Load, place, value);
  out_.BackTo(reg + 1);
}

std::uint32_t Compiler::ArgumentsByValue(const Expression* call) {
  const std::uint32_t first = out_.Mark();
  for (std::size_t i = 0; i < ArgumentCount(call); ++i) ValueInto(*call->operands[i + 1], out_.Take());
  return first;
}

// The place of a variable that stands as an argument, so that the procedure can change it.
std::optional<Operand> Compiler::PlaceOf(const Expression& argument) {
  if (argument.kind != ExpressionKind::Name) return std::nullopt;
  const Resolved resolved = Resolve(argument.name);
  if (resolved.meaning != Meaning::Variable) return std::nullopt;
  return resolved.place;
}

// A name that must be declared and is not yet: a text that the script runs may do so before it is reached.
// Not in time for a loop's counter, whose place has to last longer than a statement.
bool Compiler::IsLate(const Expression& expression) {
  return unit_.optionExplicit && expression.kind == ExpressionKind::Name &&
         Resolve(expression.name).meaning == Meaning::Unknown;
}

Operand Compiler::LatePlace(const std::u16string& name) {
  const std::uint32_t place = out_.Take();
  out_.Emit(Op::PlaceLate, {place}, {}, {}, out_.SiteOf(name));
  out_.MayHoldObject({place});
  return Operand::In(Space::Parameter, place);
}

std::optional<Operand> Compiler::TargetOf(const Expression& target) {
  return IsLate(target) ? LatePlace(target.name) : PlaceOf(target);
}

// a(i) as an argument: the element goes into a register, and back into the array after the call.
std::optional<Compiler::PutBack> Compiler::Element(const Expression& argument) {
  if (argument.kind != ExpressionKind::Call || argument.operands.size() < 2) return std::nullopt;
  const auto array = PlaceOf(*argument.operands[0]);
  if (!array || Folded(argument.operands[0]->name) == functionName_) return std::nullopt;
  PutBack element{*array, 0, argument.operands.size() - 1, 0};
  element.element = out_.Take();
  element.indices = ArgumentsByValue(&argument);
  out_.Emit(Op::Index, Operand::In(Space::Register, element.element), *array, {element.indices},
            out_.SiteOf(argument.operands[0]->name), element.count);
  return element;
}

std::uint32_t Compiler::ArgumentsByPlace(const Expression* call, std::vector<PutBack>& putBacks) {
  const std::size_t count = ArgumentCount(call);
  std::vector<std::optional<std::size_t>> elements(count);
  for (std::size_t i = 0; i < count; ++i) {
    if (const auto element = Element(*call->operands[i + 1])) {
      elements[i] = putBacks.size();
      putBacks.push_back(*element);
    }
  }
  const std::uint32_t first = out_.Mark();
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t reg = out_.Take();
    const Expression& argument = *call->operands[i + 1];
    if (elements[i]) {
      out_.Emit(Op::Refer, {reg}, Operand::In(Space::Register, putBacks[*elements[i]].element));
    } else if (const auto place = PlaceOf(argument)) {
      out_.Emit(Op::Refer, {reg}, *place);
    } else if (IsLate(argument)) {
      out_.Emit(Op::ArgumentLate, {reg}, {}, {}, out_.SiteOf(argument.name));
      out_.MayHoldObject({reg});
    } else {
      ValueInto(argument, reg);
    }
  }
  return first;
}

// Any call whose callee may be a procedure: arguments by place, result into a register, elements put back.
Operand Compiler::Invoke(Op op, Operand target, const Expression* call, std::uint32_t d,
                         std::optional<Operand> into) {
  const std::uint32_t mark = out_.Mark();
  std::vector<PutBack> putBacks;
  const std::uint32_t first = ArgumentsByPlace(call, putBacks);
  const Operand result = into && putBacks.empty() ? *into : Operand::In(Space::Register, mark);
  const Operand given = putBacks.empty() ? result : Operand::In(Space::Register, first);
  out_.BackTo(first);
  out_.Take();  // the result lies where the first argument did
  out_.Emit(op, given, target, {first}, d, ArgumentCount(call));
  for (const PutBack& element : putBacks) {
    out_.Emit(Op::PutBack, element.array, Operand::In(Space::Register, element.element), {element.indices}, 0,
              element.count);
  }
  if (!(given == result)) out_.Emit(Op::Take, result, given);
  out_.BackTo(mark);
  if (result == Operand::In(Space::Register, mark)) out_.Take();
  out_.MayHoldObject(result);
  return result;
}

Operand Compiler::Call(const Expression& expression, std::optional<Operand> into) {
  const Expression& callee = *expression.operands[0];
  if (callee.kind == ExpressionKind::Name) return CallNamed(Resolve(callee.name), expression, into);
  if (callee.kind == ExpressionKind::Member) {
    const Operand object = ObjectOf(callee);
    return Invoke(Op::CallMember, object, &expression, MemberSite(callee), into);
  }
  const Operand target = Compile(callee);
  return IndexInto(target, expression, u"", into);
}

Operand Compiler::IndexInto(Operand target, const Expression& call, std::u16string_view name,
                            std::optional<Operand> into) {
  const std::uint32_t mark = out_.Mark();
  const bool bare = call.kind != ExpressionKind::Call;
  const std::uint32_t site = name.empty() ? noSite : out_.SiteOf(name);
  if (!bare && call.operands.size() == 2 && call.operands[1]->kind != ExpressionKind::Omitted) {
    const Operand index = Compile(*call.operands[1]);
    out_.BackTo(mark);
    const Operand place = Destination(into);
    out_.Emit(Op::IndexOne, place, target, index, site);
    out_.MayHoldObject(place);
    return place;
  }
  const std::uint32_t first = ArgumentsByValue(bare ? nullptr : &call);
  out_.BackTo(mark);
  const Operand place = Destination(into);
  out_.Emit(Op::Index, place, target, {first}, site, bare ? 0 : call.operands.size() - 1);
  out_.MayHoldObject(place);
  return place;
}

// `expression` is the Call, or the Name alone where there are no arguments.
Operand Compiler::CallNamed(const Resolved& resolved, const Expression& expression,
                            std::optional<Operand> into) {
  const Expression* call = expression.kind == ExpressionKind::Call ? &expression : nullptr;
  const std::u16string& name = call == nullptr ? expression.name : expression.operands[0]->name;
  switch (resolved.meaning) {
    case Meaning::Variable:
      if (!functionName_.empty() && Folded(name) == functionName_) {
        return CallNamed(ResolveOutside(functionName_), expression, into);
      }
      return IndexInto(resolved.place, expression, name, into);
    case Meaning::Constant:
    case Meaning::Object:
      return IndexInto(resolved.place, expression, name, into);
    case Meaning::Procedure:
      return Invoke(Op::CallProcedure, {}, call, static_cast<std::uint32_t>(resolved.number), into);
    case Meaning::Method:
      if (resolved.member->get == ClassMember::none) {
        RaiseAt(noSuchMember, name);
        return out_.Constant({});
      }
      return Invoke(Op::CallMethod, {}, call, static_cast<std::uint32_t>(resolved.member->get), into);
    case Meaning::HostMember:
      return Invoke(Op::CallMember, resolved.place, call, out_.SiteOf(name), into);
    case Meaning::Builtin: {
      const std::uint32_t mark = out_.Mark();
      const std::uint32_t first = ArgumentsByValue(call);
      out_.BackTo(mark);
      const Operand place = Destination(into);
      out_.Emit(Op::CallBuiltin, place, {}, {first}, static_cast<std::uint32_t>(resolved.number),
                ArgumentCount(call));
      if (MakesObjects(symbols_.BuiltinAt(resolved.number))) out_.MayHoldObject(place);
      return place;
    }
    case Meaning::Special:
      return CallSpecial(resolved.number, expression, into);
    case Meaning::Unknown:
      break;
  }
  return Invoke(Op::CallLate, {}, call, out_.SiteOf(name), into);
}

Operand Compiler::CallSpecial(std::size_t number, const Expression& call, std::optional<Operand> into) {
  if (call.kind != ExpressionKind::Call || call.operands.size() != 2) {
    RaiseAt(wrongArgumentCount, u"");
    return out_.Constant({});
  }
  const std::uint32_t mark = out_.Mark();
  const Operand text = Compile(*call.operands[1]);
  out_.BackTo(mark);
  const Operand place = Destination(into);
  Op op = Op::Eval;
  switch (static_cast<SpecialName>(number)) {
    case SpecialName::Execute:
      op = topLevel_ ? Op::ExecuteGlobal : Op::Execute;
      break;
    case SpecialName::ExecuteGlobal:
      op = Op::ExecuteGlobal;
      break;
    case SpecialName::GetRef:
      op = Op::GetRef;
      break;
    case SpecialName::Eval:
      break;
  }
  out_.Emit(op, place, text);
  out_.MayHoldObject(place);
  return place;
}

}  // namespace quarlin::vbs
