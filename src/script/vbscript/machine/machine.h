// SPDX-License-Identifier: GPL-3.0-or-later
// Runs compiled scripts: the values of their variables, the calls on the stack, and what happens when
// something goes wrong.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "script/vbscript/compiler/compiler.h"
#include "script/vbscript/compiler/symbols.h"
#include "script/vbscript/machine/debug.h"
#include "script/vbscript/machine/engine.h"
#include "script/vbscript/machine/err_object.h"
#include "script/vbscript/machine/instance.h"

namespace quarlin::vbs {

// Variables made by Execute in a procedure.
struct Extras : std::map<std::u16string, Value> {
  HeapShare share;
};

// A procedure that is being run.
struct Frame {
  Frame(const Code& itsCode, const std::array<Value*, spaces>& itsPlaces, Instance* itsObject,
        Value* itsResult)
      : code(&itsCode),
        instruction(itsCode.instructions.data()),
        places(itsPlaces),
        me(itsObject),
        result(itsResult) {}

  // Goes on with other code, at its first instruction.
  void Begin(const Code& other) {
    code = &other;
    instruction = other.instructions.data();
    places[static_cast<std::size_t>(Space::Constant)] = const_cast<Value*>(other.constants.data());
  }

  Value* Registers() const { return places[static_cast<std::size_t>(Space::Register)]; }
  // The register or variable itself, also where it holds a Reference.
  Value& Raw(Operand operand) const {
    return places[static_cast<std::size_t>(operand.space)][operand.number];
  }
  // What the operand means.
  Value& At(Operand operand) const { return Raw(operand).Followed(); }

  const Code* code;
  const Instruction* instruction;     // being done; of all but the innermost frame, a call
  std::array<Value*, spaces> places;  // where the operands of each space begin
  Instance* me;                       // referred to by the frame; null outside methods
  Value* result;                      // a register of the caller for the value; null: nobody wants it
  bool resumeNext = false;            // On Error Resume Next holds
  std::unique_ptr<Extras> extras;
};

// The procedures that are being run, the innermost last. Their places never move.
class FrameStack {
 public:
  explicit FrameStack(std::size_t most);
  ~FrameStack();
  FrameStack(const FrameStack&) = delete;
  FrameStack& operator=(const FrameStack&) = delete;

  bool Empty() const { return top_ == begin_; }
  bool Full() const { return top_ == end_; }
  std::size_t Size() const { return static_cast<std::size_t>(top_ - begin_); }
  const Frame* Top() const { return top_; }  // one past the innermost; grows with every call
  Frame& Back() { return top_[-1]; }
  const Frame& Back() const { return top_[-1]; }
  Frame& operator[](std::size_t number) { return begin_[number]; }  // from the outermost
  // Requires: not Full.
  void Push(const Code& code, const std::array<Value*, spaces>& places, Instance* me, Value* result) {
    new (top_++) Frame(code, places, me, result);
  }
  void Pop() { (--top_)->~Frame(); }
  // `frame` is the innermost and has nothing left to be destroyed.
  void BackTo(Frame& frame) { top_ = &frame; }

 private:
  Frame* begin_;
  Frame* end_;
  Frame* top_;
};

// The memory of all registers: never moves, so that References stay good. A procedure's registers begin
// at the arguments that its caller put there.
class RegisterStack {
 public:
  explicit RegisterStack(std::size_t size);
  ~RegisterStack();
  RegisterStack(const RegisterStack&) = delete;
  RegisterStack& operator=(const RegisterStack&) = delete;

  Value* Begin() { return values_; }
  // Makes all registers below `end` values. Error 28 beyond the end of the stack.
  void Reach(const Value* end) {
    if (end > made_) Extend(end);
  }

 private:
  void Extend(const Value* end);

  Value* values_;
  Value* end_;
  Value* made_;  // those below are values
};

class Machine {
 public:
  Machine(Services& services, EngineLimits limits);
  ~Machine();
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  void AddObject(std::u16string_view name, const ObjectRef& object, bool membersAreGlobal);
  void AddCode(std::u16string_view source);
  ObjectRef Make(std::u16string_view programId);
  bool HasProcedure(std::u16string_view name) const;
  Value RunNamed(std::u16string_view name, Arguments arguments);
  void SetDebugHook(DebugHook* hook);
  void StopAt(StopsAt stops);
  CallView Where();

  // A procedure or method, from outside the loop.
  Value RunSlot(std::size_t slot, Instance* me, Arguments arguments);
  void RunTerminate(Instance& instance) noexcept;
  Value GetFrom(Instance& instance, const ClassMember& member, Arguments arguments);
  void PutInto(Instance& instance, const ClassMember& member, Arguments indices, const Value& value,
               PutKind kind);

 private:
  class Debugging;

  CallView ViewOf(const Frame& frame) const;

  // Counts the runs of the loop within each other, which the stack of the process has to hold. Conversions
  // follow the machine's locale meanwhile.
  class Nesting {
   public:
    explicit Nesting(Machine& machine);
    ~Nesting();
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    Machine& machine_;
    LocaleScope locale_;
  };

  // machine.cpp
  void Declare(ast::Program& program, const std::shared_ptr<const Unit>& unit);
  void DeclareProcedure(ast::Procedure procedure, const std::shared_ptr<const Unit>& unit);
  void DeclareClass(ast::Class& tree, const std::shared_ptr<const Unit>& unit);
  Value RunText(std::shared_ptr<const std::u16string> source);
  void CompileSlot(std::size_t slot);
  void MakeGlobals();
  bool Reconsider(Frame& frame);
  Value RunCode(const Code& code, Instance* me);
  Value RunFrom(const Frame* entry);
  bool Recover(ScriptError& error, const Frame* entry);
  void Explain(ScriptError& error) const;
  bool MayGoOn();
  void LookAround();

  // machine_upkeep.cpp
  static std::shared_ptr<const std::u16string> SourceOf(std::u16string_view source);
  void Keep(std::shared_ptr<const Code> code);
  void DropOldCode();
  void Retire(std::shared_ptr<const ClassInfo> info);
  void DropOldClasses();
  void DropMethods(const ClassInfo& info);
  std::size_t FreeSlot();
  void LetArrayGo(const Value& array);
  void LetItemsGo(std::vector<Value> items);

  // machine_calls.h
  const Code& CodeOf(std::size_t slot);
  Value* Top();
  void Push(const Code& code, Value* registers, std::size_t arguments, Instance* me, Value* result);
  Value Leave(Frame& frame) noexcept;
  void Enter(std::size_t slot, Value* arguments, std::size_t count, Instance* me, Value* result);

  // machine_loop.cpp
  Value Loop(const Frame* entry);

  // machine_operations.cpp: the operations that are not worth room in the loop.
  void Perform(Op op, const Instruction& now);

  // machine_debug.cpp
  Op StopHere();

  // machine_objects.cpp: what an instruction does that is about objects and arrays.
  std::u16string_view NameAt(const Instruction& instruction) const;
  bool GetMember(const Value& target, const Site& site, Value* arguments, std::size_t count, Value* result);
  bool PutMember(const Value& target, const Site& site, Value* indices, std::size_t count, const Value& value,
                 PutKind kind);
  int FindMember(Dispatch& object, const Site& site);
  Value* VariableNow(const std::u16string& folded, const std::optional<Symbol>& symbol);
  bool CallLate(const Site& site, Value* arguments, std::size_t count, Value* result);
  Value ReadLate(const Site& site, bool mustExist);
  Value PlaceLate(const Site& site);
  Value ArgumentLate(const Site& site);
  void CallBuiltin(const Builtin& builtin, Arguments arguments, Value& result);
  Value MakeObject(const Site& site);
  void Redimension(Value& array, const Value* bounds, std::size_t count, bool preserve);
  void Erase(Value& array);
  void PutBack(Value& array, const Value* indices, std::size_t count, const Value& element);
  Value Execute(Op op, const Value& text);
  static std::vector<Value*> PlacesIn(Frame& around, const Code& code);
  Value RunSnippet(const Code& code, Frame& around);
  Value ReferenceTo(const Value& name);

  static constexpr std::size_t fewestKept = 64;

  Services& services_;
  EngineLimits limits_;
  Holders holders_;
  LibraryContext library_;
  Ref<MachineLink> link_;
  Ref<ErrObject> err_;
  Symbols symbols_;
  std::vector<Value> globals_;
  std::vector<ProcedureSlot> slots_;
  std::vector<std::shared_ptr<const ClassInfo>> classes_;
  std::vector<std::shared_ptr<const Code>> kept_;          // replaced, but perhaps still on the stack
  std::vector<std::shared_ptr<const ClassInfo>> retired_;  // replaced, but perhaps with objects
  std::size_t mostKept_ = fewestKept;                      // until it is looked what of it can go
  std::size_t mostRetired_ = fewestKept;
  std::vector<std::size_t> freeSlots_;  // of methods of classes that have gone
  HeapShare declared_;                  // what slots and names take
  RegisterStack stack_;
  FrameStack frames_;
  int nesting_ = 0;  // runs of the loop within each other
  std::uint64_t steps_ = 0;
  std::shared_ptr<const std::u16string> script_;  // the text that was added last
  std::unique_ptr<Debugging> debugging_;          // null while nobody follows
};

// The part of a procedure that the instruction belongs to; null in front of the first.
const Mark* MarkBefore(const Code& code, std::size_t instruction);

// What an instruction does, also where a Stop stands in its place.
Op OperationAt(const Code& code, const Instruction& instruction);

}  // namespace quarlin::vbs
