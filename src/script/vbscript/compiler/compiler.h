// SPDX-License-Identifier: GPL-3.0-or-later
// From a script taken apart to instructions.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "script/vbscript/compiler/assembler.h"
#include "script/vbscript/compiler/names.h"
#include "script/vbscript/compiler/symbols.h"
#include "script/vbscript/syntax/ast.h"

namespace quarlin::vbs {

// What a text given to Execute or Eval sees of the procedure that it stands in.
struct Surroundings {
  const Code* code = nullptr;
  const std::map<std::u16string, Value>* extras = nullptr;  // made by earlier such texts
  const ClassInfo* owner = nullptr;
};

// The top-level statements of a text. Declares its variables and constants among the symbols.
std::shared_ptr<const Code> CompileTopLevel(Symbols& symbols, const Unit& unit, const ast::Program& program);

std::shared_ptr<const Code> CompileProcedure(Symbols& symbols, const ProcedureSlot& slot);

// The statements of a text given to Execute.
std::shared_ptr<const Code> CompileSnippet(Symbols& symbols, const Unit& unit, const ast::Program& program,
                                           const Surroundings& around);

// One expression, which becomes the result.
std::shared_ptr<const Code> CompileEval(Symbols& symbols, const Unit& unit, const ast::Expression& expression,
                                        const Surroundings& around);

// A literal, perhaps with a sign: the value of a constant.
Value LiteralValue(const ast::Expression& expression);

// Whether a function of the library may return an object.
bool MakesObjects(const Builtin& builtin);

// The compiler of one Code. What a statement or an expression needs is in a file of its own for each.
class Compiler {
 public:
  Compiler(Symbols& symbols, const Unit& unit, const ClassInfo* owner);

  std::shared_ptr<const Code> TopLevel(const ast::Program& program);
  std::shared_ptr<const Code> Procedure(const ast::Procedure& procedure);
  std::shared_ptr<const Code> Snippet(const ast::Program& program, const Surroundings& around);
  std::shared_ptr<const Code> Eval(const ast::Expression& expression, const Surroundings& around);

 private:
  // What a name means where it stands.
  enum class Meaning {
    Variable,    // place
    Constant,    // place
    Procedure,   // number
    Method,      // a member of the class whose method this is: member
    Object,      // place
    HostMember,  // place is the object
    Builtin,     // number
    Special,     // number
    Unknown
  };
  struct Resolved {
    Meaning meaning = Meaning::Unknown;
    Operand place;
    std::size_t number = 0;
    const ClassMember* member = nullptr;
  };
  struct Loop {
    ast::ExitKind kind;
    std::size_t withDepth;
    std::vector<std::uint32_t> exits;
  };

  // Scope.
  Resolved Resolve(std::u16string_view name);
  std::optional<Resolved> ResolveInside(const std::u16string& folded);
  Resolved ResolveOutside(const std::u16string& folded);
  void LookInto(const Surroundings& around);
  Operand Import(const std::u16string& folded);
  void DeclareLocals(const ast::Procedure& procedure);
  bool IsFree(const std::u16string& folded);
  void Assume(const std::u16string& folded);
  void Local(const std::u16string& folded, Operand place);
  void DeclareGlobals(const BlockNames& names);
  void SizeArrays(const BlockNames& names);
  void NoteNames();

  // Statements.
  void Statements(const ast::Block& block);
  void OneStatement(const ast::Statement& statement);
  void Redimension(const ast::Statement& statement);
  void Assign(const ast::Statement& statement, PutKind kind);
  bool GrowText(Operand place, const ast::Expression& target, const ast::Expression& value);
  void AssignVariable(Operand place, const ast::Expression& value, PutKind kind);
  void Store(const ast::Expression& target, Operand value, PutKind kind);
  void StoreByName(const ast::Expression& target, const ast::Expression* call, Operand value, PutKind kind);
  std::uint32_t PlainIndices(const ast::Expression& call);
  Operand PlaceToIndex(const ast::Expression& expression);
  void CallStatement(const ast::Expression& expression);
  void If(const ast::Statement& statement);
  void Select(const ast::Statement& statement);
  void RefuseCounter(const ast::Expression& counter);
  void For(const ast::Statement& statement);
  void ForEach(const ast::Statement& statement);
  void While(const ast::Statement& statement);
  void Do(const ast::Statement& statement);
  void DoLast(const ast::Statement& statement);
  void With(const ast::Statement& statement);
  void Exit(const ast::Statement& statement);
  void Erase(const ast::Statement& statement);
  void BeginLoop(ast::ExitKind kind);
  void EndLoop();

  // Expressions. The result is wherever it was anyway, or `into` (a place that is only written last).
  Operand Compile(const ast::Expression& expression, std::optional<Operand> into = std::nullopt);
  Operand NameValue(const ast::Expression& expression, std::optional<Operand> into);
  Operand MemberValue(const ast::Expression& expression, std::optional<Operand> into);
  Operand Binary(const ast::Expression& expression, std::optional<Operand> into);
  Operand Unary(Op op, const ast::Expression& expression, std::optional<Operand> into);
  Operand Call(const ast::Expression& expression, std::optional<Operand> into);
  Operand CallNamed(const Resolved& resolved, const ast::Expression& call, std::optional<Operand> into);
  Operand CallSpecial(std::size_t number, const ast::Expression& call, std::optional<Operand> into);
  Operand IndexInto(Operand target, const ast::Expression& call, std::u16string_view name,
                    std::optional<Operand> into);
  Operand Invoke(Op op, Operand target, const ast::Expression* call, std::uint32_t d,
                 std::optional<Operand> into);
  Operand ObjectOf(const ast::Expression& member);
  std::uint32_t MemberSite(const ast::Expression& member);
  Operand Destination(std::optional<Operand> into);
  void ValueInto(const ast::Expression& expression, std::uint32_t reg);

  // An element that is an argument, and has to be put back when the call has changed it.
  struct PutBack {
    Operand array;
    std::uint32_t indices;
    std::size_t count;
    std::uint32_t element;
  };
  std::uint32_t ArgumentsByValue(const ast::Expression* call);
  std::uint32_t ArgumentsByPlace(const ast::Expression* call, std::vector<PutBack>& putBacks);
  std::optional<PutBack> Element(const ast::Expression& argument);
  std::optional<Operand> PlaceOf(const ast::Expression& argument);
  bool IsLate(const ast::Expression& expression);
  std::optional<Operand> TargetOf(const ast::Expression& target);
  Operand LatePlace(const std::u16string& name);

  // Jumps to a place that is filled in later unless the condition holds.
  std::uint32_t JumpUnless(const ast::Expression& condition);
  bool MayRunScript(const ast::Expression& expression);
  void RaiseAt(std::int32_t number, std::u16string_view culprit);

  Symbols& symbols_;
  const Unit& unit_;
  const ClassInfo* owner_;
  Assembler out_;
  bool topLevel_ = false;
  const Surroundings* around_ = nullptr;
  std::u16string functionName_;  // folded; of the Function or Property Get that is compiled
  Operand functionResult_;
  std::unordered_map<std::u16string, Operand> locals_;
  std::uint32_t localCount_ = 0;
  std::vector<Operand> withObjects_;
  std::vector<Loop> loops_;
};

}  // namespace quarlin::vbs
