// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <utility>

#include "script/vbscript/compiler/compiler.h"

namespace quarlin::vbs {

using ast::Expression;
using ast::ExpressionKind;
using ast::Statement;
using ast::StatementKind;

void Compiler::Statements(const ast::Block& block) {
  for (const auto& statement : block) OneStatement(*statement);
}

void Compiler::OneStatement(const Statement& statement) {
  const std::uint32_t mark = out_.Mark();
  if (statement.kind != StatementKind::Dim && statement.kind != StatementKind::Const) {
    out_.BeginStatement(statement.at);
  }
  switch (statement.kind) {
    case StatementKind::Dim:
    case StatementKind::Const:
    case StatementKind::Nop:
      break;
    case StatementKind::ReDim:
      Redimension(statement);
      break;
    case StatementKind::Let:
      Assign(statement, PutKind::Let);
      break;
    case StatementKind::Set:
      Assign(statement, PutKind::Set);
      break;
    case StatementKind::Call:
      CallStatement(*statement.expressions[0]);
      break;
    case StatementKind::If:
      If(statement);
      break;
    case StatementKind::Select:
      Select(statement);
      break;
    case StatementKind::For:
      For(statement);
      break;
    case StatementKind::ForEach:
      ForEach(statement);
      break;
    case StatementKind::While:
      While(statement);
      break;
    case StatementKind::Do:
      Do(statement);
      break;
    case StatementKind::With:
      With(statement);
      break;
    case StatementKind::Exit:
      Exit(statement);
      break;
    case StatementKind::OnError:
      out_.Emit(statement.resumeNext ? Op::ResumeNext : Op::GoToZero);
      break;
    case StatementKind::Erase:
      Erase(statement);
      break;
  }
  out_.BackTo(mark);
  out_.ClearHeldObjects();
}

void Compiler::Redimension(const Statement& statement) {
  const Op op = statement.preserve ? Op::ReDimPreserve : Op::ReDim;
  for (std::size_t i = 0; i < statement.declarators.size(); ++i) {
    const Expression& target = *statement.expressions[i];
    const auto& bounds = statement.declarators[i].bounds;
    const auto variable = TargetOf(target);
    const std::uint32_t mark = out_.Mark();
    Operand place = variable.value_or(Operand{});
    Operand object;
    if (!variable && target.kind == ExpressionKind::Member) {
      object = ObjectOf(target);
      place = Operand::In(Space::Register, out_.Take());
      if (statement.preserve) out_.Emit(Op::GetMember, place, object, {}, out_.SiteOf(target.name));
    } else if (!variable) {
      RaiseAt(typeMismatch, target.name);
      continue;
    }
    const std::uint32_t first = out_.Mark();
    for (const auto& bound : bounds) ValueInto(*bound, out_.Take());
    out_.Emit(op, place, {}, {first}, 0, bounds.size());
    if (!variable) out_.Emit(Op::PutMember, place, object, {first}, out_.SiteOf(target.name));
    out_.BackTo(mark);
  }
}

namespace {

bool IsName(const Expression& expression, std::u16string_view folded) {
  return expression.kind == ExpressionKind::Name && Folded(expression.name) == folded;
}

// The pieces of a & b & c, the first one first.
std::vector<const Expression*> Pieces(const Expression& chain) {
  std::vector<const Expression*> pieces;
  const Expression* left = &chain;
  while (left->kind == ExpressionKind::Binary && left->operation == Operator::Concatenate) {
    pieces.push_back(left->operands[1].get());
    left = left->operands[0].get();
  }
  pieces.push_back(left);
  std::reverse(pieces.begin(), pieces.end());
  return pieces;
}

}  // namespace

void Compiler::Assign(const Statement& statement, PutKind kind) {
  const Expression& target = *statement.expressions[0];
  const Expression& value = *statement.expressions[1];
  if (const auto place = TargetOf(target)) {
    if (kind == PutKind::Set || !GrowText(*place, target, value)) AssignVariable(*place, value, kind);
    return;
  }
  Store(target, Compile(value), kind);
}

// x = x & a & b as x = x & (a & b), so that a long text grows in place instead of being copied.
bool Compiler::GrowText(Operand place, const Expression& target, const Expression& value) {
  const auto pieces = Pieces(value);
  if (pieces.size() < 3 || !IsName(*pieces[0], Folded(target.name))) return false;
  if (std::any_of(pieces.begin() + 1, pieces.end(), [this](auto* piece) { return MayRunScript(*piece); })) {
    return false;
  }
  const Operand tail = Operand::In(Space::Register, out_.Take());
  Operand left = Compile(*pieces[1]);
  for (std::size_t i = 2; i < pieces.size(); ++i) {
    const std::uint32_t mark = out_.Mark();
    out_.Emit(Op::Concatenate, tail, left, Compile(*pieces[i]));
    out_.BackTo(mark);
    left = tail;
  }
  out_.Emit(Op::Concatenate, place, place, tail);
  return true;
}

void Compiler::AssignVariable(Operand place, const Expression& value, PutKind kind) {
  const auto finish = [&](Operand result, Op plain, Op taken) {
    if (result == place) return;
    const bool isResult = out_.IsResult(result);
    out_.Emit(isResult ? taken : plain, place, result);
    if (isResult) out_.Taken(result);
  };
  if (kind == PutKind::Set) return finish(Compile(value), Op::Set, Op::SetTaken);
  bool direct = value.kind == ExpressionKind::Binary || value.kind == ExpressionKind::Negate ||
                value.kind == ExpressionKind::Plus || value.kind == ExpressionKind::Not;
  if (value.kind == ExpressionKind::Call && value.operands[0]->kind == ExpressionKind::Name) {
    const Resolved callee = Resolve(value.operands[0]->name);
    direct = callee.meaning == Meaning::Builtin && !MakesObjects(symbols_.BuiltinAt(callee.number));
  }
  finish(direct ? Compile(value, place) : Compile(value), Op::Let, Op::LetTaken);
}

void Compiler::Store(const Expression& target, Operand value, PutKind kind) {
  const Expression* call = target.kind == ExpressionKind::Call ? &target : nullptr;
  const Expression& named = call == nullptr ? target : *call->operands[0];
  if (named.kind == ExpressionKind::Name) return StoreByName(named, call, value, kind);
  const std::size_t count = call == nullptr ? 0 : call->operands.size() - 1;
  if (named.kind == ExpressionKind::Member) {
    const Operand object = ObjectOf(named);
    const std::uint32_t first = ArgumentsByValue(call);
    out_.Emit(kind == PutKind::Let ? Op::PutMember : Op::SetMember, value, object, {first}, MemberSite(named),
              count);
    return;
  }
  const std::uint32_t first =
      named.kind == ExpressionKind::Call ? PlainIndices(*call) : ArgumentsByValue(call);
  if (kind == PutKind::Let && named.kind == ExpressionKind::Call) {
    const Operand plain = Operand::In(Space::Register, out_.Take());
    out_.Emit(Op::Let, plain, value);
    value = plain;
  }
  const Operand indexed = PlaceToIndex(named);
  out_.Emit(kind == PutKind::Let ? Op::PutIndex : Op::SetIndex, indexed, value, {first}, noSite, count);
}

// Indices, and not objects that stand for them: a default property that runs now cannot take away the
// element that is about to be found.
std::uint32_t Compiler::PlainIndices(const Expression& call) {
  const std::uint32_t first = ArgumentsByValue(&call);
  for (std::size_t i = 1; i < call.operands.size(); ++i) {
    const Operand index = {first + static_cast<std::uint32_t>(i) - 1};
    if (call.operands[i]->kind != ExpressionKind::Literal) out_.Emit(Op::Let, index, index);
  }
  return first;
}

// What a(1)(2) = v indexes: the element a(1) where it stands, rather than a copy of it. All indices come
// first, as a procedure among them may change the array.
Operand Compiler::PlaceToIndex(const Expression& expression) {
  if (expression.kind != ExpressionKind::Call) return Compile(expression);
  const Expression& callee = *expression.operands[0];
  const auto variable = TargetOf(callee);
  if (!variable && callee.kind != ExpressionKind::Call) return Compile(expression);
  const std::uint32_t first = PlainIndices(expression);
  const Operand array = variable ? *variable : PlaceToIndex(callee);
  const std::uint32_t element = out_.Take();
  out_.Emit(Op::ElementPlace, {element}, array, {first}, noSite, expression.operands.size() - 1);
  out_.MayHoldObject({element});
  return Operand::In(Space::Parameter, element);
}

// Where the name is that of a variable, it is one that is indexed.
void Compiler::StoreByName(const Expression& target, const Expression* call, Operand value, PutKind kind) {
  Resolved resolved = Resolve(target.name);
  if (IsLate(target)) resolved = {Meaning::Variable, LatePlace(target.name)};
  const std::size_t count = call == nullptr ? 0 : call->operands.size() - 1;
  switch (resolved.meaning) {
    case Meaning::Variable:
    case Meaning::Object: {
      const std::uint32_t site = out_.SiteOf(target.name);
      if (count == 1 && kind == PutKind::Let && call->operands[1]->kind != ExpressionKind::Omitted) {
        out_.Emit(Op::PutIndexOne, resolved.place, value, Compile(*call->operands[1]), site);
        return;
      }
      const std::uint32_t first = ArgumentsByValue(call);
      out_.Emit(kind == PutKind::Let ? Op::PutIndex : Op::SetIndex, resolved.place, value, {first}, site,
                count);
      return;
    }
    case Meaning::HostMember: {
      const std::uint32_t first = ArgumentsByValue(call);
      out_.Emit(kind == PutKind::Let ? Op::PutMember : Op::SetMember, value, resolved.place, {first},
                out_.SiteOf(target.name), count);
      return;
    }
    case Meaning::Method: {
      const int slot = kind == PutKind::Let ? resolved.member->let : resolved.member->set;
      if (slot == ClassMember::none) return RaiseAt(illegalAssignment, target.name);
      const std::uint32_t first = ArgumentsByValue(call);
      const std::uint32_t last = out_.Take();
      out_.Emit(Op::Load, {last}, value);
      out_.Emit(Op::CallMethod, {first}, {}, {first}, static_cast<std::uint32_t>(slot), count + 1);
      return;
    }
    case Meaning::Unknown:
      return RaiseAt(typeMismatch, target.name);
    default:
      return RaiseAt(illegalAssignment, target.name);
  }
}

namespace {

std::optional<Op> WithoutValue(Op call) {
  switch (call) {
    case Op::CallMember:
      return Op::RunMember;
    case Op::CallProcedure:
      return Op::RunProcedure;
    case Op::CallMethod:
      return Op::RunMethod;
    case Op::CallLate:
      return Op::RunLate;
    default:
      return std::nullopt;
  }
}

}  // namespace

void Compiler::CallStatement(const Expression& expression) {
  const bool bare = expression.kind == ExpressionKind::Name;
  const Operand value =
      bare ? CallNamed(Resolve(expression.name), expression, std::nullopt) : Compile(expression);
  Instruction& last = out_.Made().instructions.back();
  if (const auto op = WithoutValue(last.op)) {
    last.op = *op;
    out_.Taken(value);
  }
}

void Compiler::If(const Statement& statement) {
  std::vector<std::uint32_t> ends;
  for (std::size_t i = 0; i < statement.branches.size(); ++i) {
    const ast::Branch& branch = statement.branches[i];
    const Position at = i == 0 ? statement.at : branch.at;
    if (i > 0) out_.BeginStatement(at);
    const std::uint32_t mark = out_.Mark();
    const std::uint32_t otherwise = JumpUnless(*branch.tests[0]);
    out_.BackTo(mark);
    out_.BeginPart(at);  // an error in the condition goes on with the branch
    out_.ClearHeldObjects();
    Statements(branch.body);
    const bool last = i + 1 == statement.branches.size() && !statement.hasOtherwise;
    if (!last) ends.push_back(out_.Emit(Op::Jump));
    out_.JumpHere(otherwise);
  }
  Statements(statement.otherwise);
  for (const std::uint32_t end : ends) out_.JumpHere(end);
}

void Compiler::Select(const Statement& statement) {
  const Operand chosen = Operand::In(Space::Register, out_.Take());
  out_.Emit(Op::Clear, chosen, {}, {}, 0, 1);
  out_.Emit(Op::Let, chosen, Compile(*statement.expressions[0]));
  out_.BackTo(chosen.number + 1);
  const bool literal = statement.expressions[0]->kind == ExpressionKind::Literal;
  std::vector<std::uint32_t> ends;
  for (const ast::Branch& branch : statement.branches) {
    std::vector<std::uint32_t> matches;
    for (const auto& test : branch.tests) {
      out_.BeginPart(statement.at);
      const Operand value = Compile(*test);
      const Origin origin = value.space == Space::Constant ? Origin::LiteralRight
                            : literal                      ? Origin::LiteralLeft
                                                           : Origin::Variable;
      matches.push_back(out_.Emit(Op::JumpIfEqual, {}, chosen, value, 0, static_cast<std::size_t>(origin)));
      out_.BackTo(chosen.number + 1);
    }
    const std::uint32_t next = out_.Emit(Op::Jump);
    for (const std::uint32_t match : matches) out_.JumpHere(match);
    out_.BeginPart(branch.at);
    Statements(branch.body);
    ends.push_back(out_.Emit(Op::Jump));
    out_.JumpHere(next);
  }
  Statements(statement.otherwise);
  for (const std::uint32_t end : ends) out_.JumpHere(end);
}

void Compiler::BeginLoop(ast::ExitKind kind) {
  loops_.push_back({kind, withObjects_.size(), {}});
}

void Compiler::EndLoop() {
  for (const std::uint32_t exit : loops_.back().exits) out_.JumpHere(exit);
  loops_.pop_back();
}

void Compiler::RefuseCounter(const Expression& counter) {
  if (IsLate(counter)) LatePlace(counter.name);  // an error of its own where there is none at all
  RaiseAt(illegalAssignment, counter.name);
}

void Compiler::For(const Statement& statement) {
  const auto counter = PlaceOf(*statement.expressions[0]);
  if (!counter) return RefuseCounter(*statement.expressions[0]);
  const std::uint32_t hidden = out_.Take(2);  // limit and step
  out_.Emit(Op::Clear, {hidden}, {}, {}, 0, 2);
  const std::uint32_t mark = out_.Mark();
  const std::uint32_t first = out_.Take();
  ValueInto(*statement.expressions[1], first);
  ValueInto(*statement.expressions[2], hidden);
  out_.BackTo(first + 1);
  if (statement.expressions.size() > 3) {
    ValueInto(*statement.expressions[3], hidden + 1);
    out_.BackTo(first + 1);
  } else {
    out_.Emit(Op::Load, {hidden + 1}, out_.Constant(Value::Integer(1)));
  }
  const std::uint32_t start = out_.Emit(Op::ForStart, *counter, {first}, {hidden});
  out_.BackTo(mark);
  const std::uint32_t body = out_.Here();
  out_.BeginPart(statement.at);
  BeginLoop(ast::ExitKind::For);
  Statements(statement.body);
  out_.BeginStatement(statement.endAt);
  out_.Emit(Op::ForNext, *counter, {}, {hidden}, body);
  out_.JumpHere(start);
  EndLoop();
}

void Compiler::ForEach(const Statement& statement) {
  const auto item = PlaceOf(*statement.expressions[0]);
  if (!item) return RefuseCounter(*statement.expressions[0]);
  const std::uint32_t walk = out_.Take();
  out_.Emit(Op::Clear, {walk}, {}, {}, 0, 1);
  const std::uint32_t mark = out_.Mark();
  out_.Emit(Op::EachStart, {walk}, Compile(*statement.expressions[1]));
  out_.BackTo(mark);
  const std::uint32_t first = out_.Emit(Op::EachNext, *item, {}, {walk});
  const std::uint32_t body = out_.Here();
  out_.BeginPart(statement.at);
  out_.ClearHeldObjects();
  BeginLoop(ast::ExitKind::For);
  Statements(statement.body);
  out_.BeginStatement(statement.endAt);
  const std::uint32_t next = out_.Emit(Op::EachNext, *item, {}, {walk});
  out_.Emit(Op::JumpBack, {}, {}, {}, body);
  out_.JumpHere(first);
  out_.JumpHere(next);
  EndLoop();
  out_.Emit(Op::Clear, {walk}, {}, {}, 0, 1);
}

void Compiler::While(const Statement& statement) {
  const std::uint32_t top = out_.Here();
  const std::uint32_t mark = out_.Mark();
  const std::uint32_t exit = JumpUnless(*statement.expressions[0]);
  out_.BackTo(mark);
  out_.BeginPart(statement.at);
  out_.ClearHeldObjects();
  Statements(statement.body);
  out_.BeginStatement(statement.endAt);
  out_.Emit(Op::JumpBack, {}, {}, {}, top);
  out_.JumpHere(exit);
}

void Compiler::Do(const Statement& statement) {
  BeginLoop(ast::ExitKind::Do);
  if (statement.loop == ast::LoopKind::WhileFirst) {
    While(statement);
  } else if (statement.loop == ast::LoopKind::UntilFirst) {
    const std::uint32_t top = out_.Here();
    const std::uint32_t mark = out_.Mark();
    const std::uint32_t exit = out_.Emit(Op::JumpIf, {}, Compile(*statement.expressions[0]));
    out_.BackTo(mark);
    out_.BeginPart(statement.at);
    out_.ClearHeldObjects();
    Statements(statement.body);
    out_.BeginStatement(statement.endAt);
    out_.Emit(Op::JumpBack, {}, {}, {}, top);
    out_.JumpHere(exit);
  } else {
    DoLast(statement);
  }
  EndLoop();
}

void Compiler::DoLast(const Statement& statement) {
  const std::uint32_t top = out_.Here();
  Statements(statement.body);
  out_.BeginStatement(statement.endAt);
  if (statement.loop == ast::LoopKind::Forever) {
    out_.Emit(Op::JumpBack, {}, {}, {}, top);
    return;
  }
  const std::uint32_t mark = out_.Mark();
  const std::uint32_t jump = JumpUnless(*statement.expressions[0]);
  out_.BackTo(mark);
  if (statement.loop == ast::LoopKind::WhileLast) {
    out_.Emit(Op::JumpBack, {}, {}, {}, top);
    out_.JumpHere(jump);
  } else {
    const std::uint32_t exit = out_.Emit(Op::Jump);
    out_.JumpHere(jump);
    out_.Emit(Op::JumpBack, {}, {}, {}, top);
    out_.JumpHere(exit);
  }
  out_.BeginPart(statement.endAt);
}

void Compiler::With(const Statement& statement) {
  const Operand object = Operand::In(Space::Register, out_.Take());
  out_.Emit(Op::Clear, object, {}, {}, 0, 1);
  const Operand value = Compile(*statement.expressions[0]);
  const bool isResult = out_.IsResult(value);
  out_.Emit(isResult ? Op::SetTaken : Op::Set, object, value);
  if (isResult) out_.Taken(value);
  out_.BackTo(object.number + 1);
  withObjects_.push_back(object);
  Statements(statement.body);
  withObjects_.pop_back();
  out_.BeginStatement(statement.endAt);
  out_.Emit(Op::Clear, object, {}, {}, 0, 1);
}

void Compiler::Exit(const Statement& statement) {
  if (statement.exit != ast::ExitKind::Do && statement.exit != ast::ExitKind::For) {
    out_.Emit(Op::Return);
    return;
  }
  const auto loop = std::find_if(loops_.rbegin(), loops_.rend(),
                                 [&](const Loop& candidate) { return candidate.kind == statement.exit; });
  if (loop == loops_.rend()) return RaiseAt(1039, u"");
  for (std::size_t i = loop->withDepth; i < withObjects_.size(); ++i) {
    out_.Emit(Op::Clear, withObjects_[i], {}, {}, 0, 1);
  }
  loop->exits.push_back(out_.Emit(Op::Jump));
}

void Compiler::Erase(const Statement& statement) {
  for (const auto& target : statement.expressions) {
    if (const auto place = TargetOf(*target)) {
      out_.Emit(Op::Erase, *place);
    } else {
      RaiseAt(typeMismatch, target->name);
    }
  }
}

}  // namespace quarlin::vbs
