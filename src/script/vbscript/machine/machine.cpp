// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <new>
#include <utility>

#include "script/values/conversions.h"
#include "script/values/effort.h"
#include "script/values/indexing.h"
#include "script/vbscript/machine/machine_calls.h"
#include "script/vbscript/machine/machine_debugging.h"
#include "script/vbscript/syntax/parser.h"

namespace quarlin::vbs {
namespace {

constexpr int deepestNesting = 120;            // runs of the loop within each other
constexpr std::size_t registersPerCall = 100;  // on the average; many calls of small procedures fit
constexpr std::size_t mostGlobals = std::size_t{1} << 16;
constexpr std::size_t bytesPerName = 160;  // what the tables take for it, about

// Where Resume Next goes on: the next statement, or the end of the procedure.
const Instruction* NextStatement(const Code& code, const Instruction* failed) {
  const auto at = static_cast<std::size_t>(failed - code.instructions.data());
  const Mark* mark = MarkBefore(code, at);
  const Mark* end = code.marks.data() + code.marks.size();
  const Mark* next = mark == nullptr ? code.marks.data() : mark + 1;
  while (next != end && next->instruction <= at) ++next;
  if (next == end) return &code.instructions.back();
  return code.instructions.data() + next->instruction;
}

}  // namespace

const Mark* MarkBefore(const Code& code, std::size_t instruction) {
  const auto after = std::upper_bound(code.marks.begin(), code.marks.end(), instruction,
                                      [](std::size_t at, const Mark& mark) { return at < mark.instruction; });
  return after == code.marks.begin() ? nullptr : &*(after - 1);
}

FrameStack::FrameStack(std::size_t most)
    : begin_(static_cast<Frame*>(::operator new(most * sizeof(Frame), std::align_val_t(alignof(Frame))))),
      end_(begin_ + most),
      top_(begin_) {}

FrameStack::~FrameStack() {
  while (!Empty()) Pop();
  ::operator delete(begin_, std::align_val_t(alignof(Frame)));
}

RegisterStack::RegisterStack(std::size_t size)
    : values_(static_cast<Value*>(::operator new(size * sizeof(Value)))),
      end_(values_ + size),
      made_(values_) {}

RegisterStack::~RegisterStack() {
  std::destroy(values_, made_);
  ::operator delete(values_);
}

void RegisterStack::Extend(const Value* end) {
  if (end > end_) throw ScriptError(outOfStackSpace);
  while (made_ < end) new (made_++) Value();
}

Machine::Nesting::Nesting(Machine& machine) : machine_(machine), locale_(machine.library_.locale) {
  if (machine.nesting_ >= deepestNesting) throw ScriptError(outOfStackSpace);
  ++machine.nesting_;
}

Machine::Nesting::~Nesting() {
  --machine_.nesting_;
}

Machine::Machine(Services& services, EngineLimits limits)
    : services_(services),
      limits_(limits),
      holders_(limits.births),
      library_{services, {}, &holders_},
      link_(new MachineLink),
      err_(new ErrObject),
      stack_(limits.callDepth * registersPerCall),
      frames_(limits.callDepth) {
  effort::Begin(limits_.stepsPerLook);
  link_->machine = this;
  globals_.reserve(mostGlobals);
  symbols_.AddObject(u"Err", Value::Object(err_.Get()), false);
}

Machine::~Machine() {
  // The last objects may run their Class_Terminate as long as everything else is there.
  for (Value& global : globals_) global = Value();
  link_->machine = nullptr;
  holders_.LetAllGo();
}

void Machine::AddObject(std::u16string_view name, const ObjectRef& object, bool membersAreGlobal) {
  symbols_.AddObject(name, Value::Object(object), membersAreGlobal);
}

void Machine::AddCode(std::u16string_view source) {
  script_ = SourceOf(source);
  RunText(script_);
}

Value Machine::RunText(std::shared_ptr<const std::u16string> source) {
  ast::Program program = Parse(*source);
  auto unit = std::make_shared<Unit>();
  unit->source = std::move(source);
  unit->optionExplicit = program.optionExplicit;
  Declare(program, unit);
  const auto code = CompileTopLevel(symbols_, *unit, program);
  MakeGlobals();
  return RunCode(*code, nullptr);
}

// The places of new names. Procedures that took one for a variable of their own are compiled anew.
void Machine::MakeGlobals() {
  if (globals_.size() == symbols_.VariableCount()) return;
  if (symbols_.VariableCount() > mostGlobals) throw ScriptError(outOfMemory);
  globals_.resize(symbols_.VariableCount(), Value::Untouched());
  for (ProcedureSlot& slot : slots_) {
    if (!slot.code) continue;
    const auto& assumed = slot.code->assumed;
    if (std::none_of(assumed.begin(), assumed.end(),
                     [this](const auto& name) { return symbols_.FindDeclared(name) != nullptr; })) {
      continue;
    }
    Keep(std::move(slot.code));
  }
}

void Machine::Declare(ast::Program& program, const std::shared_ptr<const Unit>& unit) {
  for (ast::Procedure& procedure : program.procedures) DeclareProcedure(std::move(procedure), unit);
  for (ast::Class& tree : program.classes) DeclareClass(tree, unit);
  declared_.Resize(slots_.size() * sizeof(ProcedureSlot) + symbols_.Count() * bytesPerName);
}

namespace {

ProcedureSlot SlotOf(ast::Procedure procedure, std::shared_ptr<const Unit> unit, const ClassInfo* owner) {
  std::u16string name = procedure.name;
  return {std::move(name),
          std::make_shared<const ast::Procedure>(std::move(procedure)),
          std::move(unit),
          owner,
          {}};
}

}  // namespace

// A second procedure of a name takes the slot of the first, so that callers which are compiled find it.
void Machine::DeclareProcedure(ast::Procedure procedure, const std::shared_ptr<const Unit>& unit) {
  const std::u16string folded = Folded(procedure.name);
  const Symbol* known = symbols_.FindDeclared(folded);
  ProcedureSlot made = SlotOf(std::move(procedure), unit, nullptr);
  if (known != nullptr && known->kind == SymbolKind::Procedure) {
    ProcedureSlot& slot = slots_[known->number];
    if (slot.code) Keep(slot.code);
    slot = std::move(made);
    return;
  }
  symbols_.Declare(folded, {SymbolKind::Procedure, slots_.size(), {}});
  slots_.push_back(std::move(made));
}

namespace {

// Tells a class from all others for ever, also from one that had its memory before. Odd, so that it is
// the address of nothing.
const void* NewShape() {
  static std::uintptr_t last = 1;
  return reinterpret_cast<const void*>(last += 2);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace

void Machine::DeclareClass(ast::Class& tree, const std::shared_ptr<const Unit>& unit) {
  auto info = std::make_shared<ClassInfo>();
  info->shape = NewShape();
  info->name = tree.name;
  const auto member = [&](const std::u16string& name) -> ClassMember& {
    const auto [place, isNew] =
        info->numbers.try_emplace(Folded(name), static_cast<int>(info->members.size()));
    if (isNew) info->members.push_back({name});
    return info->members[static_cast<std::size_t>(place->second)];
  };
  for (const ast::Class::Field& field : tree.fields) {
    ClassMember& made = member(field.declarator.name);
    made.isPrivate = field.isPrivate;
    made.field = static_cast<int>(info->fields.size());
    std::vector<std::int32_t> bounds;
    for (const auto& bound : field.declarator.bounds) {
      bounds.push_back(static_cast<std::int32_t>(LiteralValue(*bound).AsWhole()));
    }
    info->fields.push_back({field.declarator.isArray, std::move(bounds)});
  }
  for (ast::Procedure& procedure : tree.procedures) {
    const std::u16string folded = Folded(procedure.name);
    const ast::ProcedureKind kind = procedure.kind;
    ClassMember& made = member(procedure.name);
    made.isPrivate = procedure.isPrivate;
    if (procedure.isDefault) info->defaultMember = info->numbers[folded];
    const auto slot = static_cast<int>(FreeSlot());
    slots_[static_cast<std::size_t>(slot)] = SlotOf(std::move(procedure), unit, info.get());
    (kind == ast::ProcedureKind::PropertyLet   ? made.let
     : kind == ast::ProcedureKind::PropertySet ? made.set
                                               : made.get) = slot;
    if (folded == u"class_initialize") info->initialize = slot;
    if (folded == u"class_terminate") info->terminate = slot;
  }
  info->share.Resize(sizeof(ClassInfo) + info->members.size() * (sizeof(ClassMember) + bytesPerName));
  const std::u16string folded = Folded(tree.name);
  if (const auto known = symbols_.FindClass(folded)) {
    Retire(std::exchange(classes_[*known], std::move(info)));
    return;
  }
  symbols_.DeclareClass(folded, classes_.size());
  classes_.push_back(std::move(info));
}

bool Machine::HasProcedure(std::u16string_view name) const {
  const Symbol* symbol = symbols_.FindDeclared(Folded(name));
  return symbol != nullptr && symbol->kind == SymbolKind::Procedure;
}

Value Machine::RunNamed(std::u16string_view name, Arguments arguments) {
  const Symbol* symbol = symbols_.FindDeclared(Folded(name));
  if (symbol == nullptr || symbol->kind != SymbolKind::Procedure) throw ScriptError(typeMismatch, name);
  return RunSlot(symbol->number, nullptr, arguments);
}

void Machine::CompileSlot(std::size_t number) {
  ProcedureSlot& slot = slots_[number];
  MakeGlobals();
  symbols_.Settle(globals_);
  slot.code = CompileProcedure(symbols_, slot);
  if (debugging_) debugging_->Follow(*slot.code);
}

// At the first instruction of a procedure. True when the frame has other code now.
bool Machine::Reconsider(Frame& frame) {
  const auto& awaited = frame.code->awaited;
  if (std::all_of(awaited.begin(), awaited.end(),
                  [this](std::size_t global) { return globals_[global].IsUntouched(); })) {
    return false;
  }
  const auto slot = std::find_if(slots_.begin(), slots_.end(),
                                 [&](const ProcedureSlot& one) { return one.code.get() == frame.code; });
  if (slot == slots_.end()) return false;  // another procedure has taken its name by now
  Keep(slot->code);
  CompileSlot(static_cast<std::size_t>(slot - slots_.begin()));
  const Code& code = *slot->code;
  stack_.Reach(frame.Registers() + code.registers);
  for (std::size_t i = code.parameters; i < code.variables; ++i) frame.Registers()[i].Clear();
  frame.Begin(code);
  return true;
}

Value Machine::RunCode(const Code& code, Instance* me) {
  const Nesting nesting(*this);
  const Frame* const entry = frames_.Top();
  if (debugging_) debugging_->Follow(code);
  Push(code, Top(), 0, me, nullptr);
  return RunFrom(entry);
}

Value Machine::RunSlot(std::size_t slot, Instance* me, Arguments arguments) {
  const Nesting nesting(*this);
  const Frame* const entry = frames_.Top();
  Value* top = Top();
  stack_.Reach(top + arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) top[i] = arguments[i].Followed();
  Enter(slot, top, arguments.size(), me, nullptr);
  return RunFrom(entry);
}

// A call from outside the loop is a step, too, and so is what goes on behind a caught error: procedures that
// call themselves by way of an object, twice each, would never come to a look.
Value Machine::RunFrom(const Frame* entry) {
  for (;;) {
    try {
      if (effort::Step()) LookAround();
      return Loop(entry);
    } catch (ScriptError& error) {
      if (!Recover(error, entry)) throw;
    } catch (const std::bad_alloc&) {
      ScriptError error(outOfMemory);
      if (!Recover(error, entry)) throw error;
    }
  }
}

// A script that was stopped runs no more, however many of its objects go with it.
void Machine::RunTerminate(Instance& instance) noexcept {
  try {
    if (!MayGoOn()) return;
    RunSlot(static_cast<std::size_t>(instance.Info().terminate), &instance, {});
  } catch (...) {
    // Nobody waits for the outcome: the object goes in any case.
  }
}

namespace {

// Arguments of the call that failed: what is put into their registers next must not reach their places.
void ForgetReferences(const Frame& frame) {
  for (std::size_t i = frame.code->variables; i < frame.code->registers; ++i) {
    if (frame.Registers()[i].Is(Kind::Reference)) frame.Registers()[i].Clear();
  }
}

}  // namespace

// Unwinds to the nearest procedure under Resume Next and sets it to go on behind the failed statement.
// False when there is none above `entry`; all of those procedures have then ended.
bool Machine::Recover(ScriptError& error, const Frame* entry) {
  constexpr std::size_t stepsOfError = 300;  // to throw, find and catch it
  effort::Spend(stepsOfError);
  const bool isNew = error.position.line == 0;
  Explain(error);
  if (debugging_ && isNew) debugging_->Failed(error);
  while (frames_.Top() > entry) {
    Frame& frame = frames_.Back();
    if (frame.resumeNext && !error.isFinal) {
      err_->Take(error);
      ForgetReferences(frame);
      frame.instruction = NextStatement(*frame.code, frame.instruction);
      return true;
    }
    Leave(frame);
  }
  return false;
}

namespace {

constexpr std::size_t longestQuote = 200;

// What was wrong with the operands of an operator, as a report quotes it.
std::u16string Quoted(const Value& left, const Value& right) {
  for (const Value* value : {&left, &right}) {
    if (!value->IsString() || IsNumeric(*value)) continue;
    const std::u16string_view text = value->AsText();
    return u"[string: \"" + std::u16string(text.substr(0, longestQuote)) +
           (text.size() > longestQuote ? u"..." : u"") + u"\"]";
  }
  return {};
}

}  // namespace

// The place where it happened, and the name of the culprit where the instruction tells it.
void Machine::Explain(ScriptError& error) const {
  if (error.position.line != 0 || frames_.Empty()) return;
  const Frame& frame = frames_.Back();
  const Code& code = *frame.code;
  const Mark* mark = MarkBefore(code, static_cast<std::size_t>(frame.instruction - code.instructions.data()));
  if (mark != nullptr) error.position = mark->at;
  error.script = code.source;
  Instruction failed = *frame.instruction;
  failed.op = OperationAt(code, *frame.instruction);
  if (!error.culprit.empty()) return;
  if (failed.op == Op::CallBuiltin) error.culprit = symbols_.BuiltinAt(failed.d).name;
  const bool indexed = failed.op == Op::IndexOne || failed.op == Op::PutIndexOne ||
                       (failed.op == Op::Index && failed.count == 1);
  if (indexed && error.number == subscriptOutOfRange && failed.d != noSite) {
    error.culprit = code.sites[failed.d].name + u"(" + QuotedText(frame.At(failed.c)) + u")";
  }
  const bool binary = (failed.op >= Op::Add && failed.op <= Op::Imp) ||
                      (failed.op >= Op::JumpIfEqual && failed.op <= Op::JumpUnlessGreaterEqual);
  if (binary && error.number == typeMismatch) {
    error.culprit = Quoted(frame.At(failed.b), frame.At(failed.c));
  }
}

bool Machine::MayGoOn() {
  const bool tooLong = limits_.steps != 0 && steps_ > limits_.steps;
  return !tooLong && services_.MayGoOn();
}

void Machine::LookAround() {
  steps_ += static_cast<std::uint64_t>(limits_.stepsPerLook - effort::StepsLeft());
  effort::Begin(limits_.stepsPerLook);
  if (debugging_) debugging_->CountLook();
  if (MayGoOn()) return holders_.CollectWhenDue();
  ThrowStopped();
}

Value Machine::GetFrom(Instance& instance, const ClassMember& member, Arguments arguments) {
  if (member.field != ClassMember::none) {
    const Value field = instance.Fields()[static_cast<std::size_t>(member.field)];
    return arguments.empty() ? field : IndexValue(field, arguments, member.name);
  }
  if (member.get == ClassMember::none) throw ScriptError(wrongArgumentCount, member.name);
  const auto slot = static_cast<std::size_t>(member.get);
  if (!arguments.empty() && CodeOf(slot).parameters == 0) {
    const Value got = RunSlot(slot, &instance, {});
    if (!got.IsArray() && !got.IsObject()) throw ScriptError(wrongArgumentCount, member.name);
    return IndexValue(got, arguments, member.name);
  }
  return RunSlot(slot, &instance, arguments);
}

void Machine::PutInto(Instance& instance, const ClassMember& member, Arguments indices, const Value& value,
                      PutKind kind) {
  if (member.field != ClassMember::none) {
    Value& field = instance.Fields()[static_cast<std::size_t>(member.field)];
    if (!indices.empty()) return PutIndexed(field, indices, value, kind, member.name);
    if (kind == PutKind::Set && !value.IsObject()) throw ScriptError(objectRequired, member.name);
    Value stored = kind == PutKind::Let ? LetValue(value) : value;
    field.Swap(stored);
    return;
  }
  int slot = kind == PutKind::Let ? member.let : member.set;
  if (slot == ClassMember::none) throw ScriptError(noSuchMember, member.name);
  std::vector<Value> arguments(indices.begin(), indices.end());
  arguments.push_back(value);
  RunSlot(static_cast<std::size_t>(slot), &instance, arguments);
}

}  // namespace quarlin::vbs
