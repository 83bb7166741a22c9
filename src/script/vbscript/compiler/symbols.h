// SPDX-License-Identifier: GPL-3.0-or-later
// The names that every procedure of an engine can see: what its scripts declared, the library, and the
// host's objects with their members.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "script/values/dispatch.h"
#include "script/vbscript/compiler/bytecode.h"
#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {

enum class SymbolKind {
  Variable,    // number: its place among the globals
  Constant,    // value
  Procedure,   // number: its slot
  Object,      // value: a named object of the host, or Err
  HostMember,  // value: the object; a member of it under this name
  Builtin,     // number: in the table of the library
  Special      // number: a SpecialName
};

// Names that look like functions, but need the machine itself.
enum class SpecialName { Execute, ExecuteGlobal, Eval, GetRef };

struct Symbol {
  SymbolKind kind;
  std::size_t number = 0;
  Value value;
  bool awaited = false;  // a variable that nobody declared, and to which the top level assigns later on
};

// A text that was added, which its procedures refer to for messages.
struct Unit {
  std::shared_ptr<const std::u16string> source;
  bool optionExplicit = false;
};

struct ClassInfo;

// A procedure by its number. It is compiled when it is first called, so that it sees all that is declared
// by then, and so that the unused part of a long script costs nothing.
struct ProcedureSlot {
  std::u16string name;
  std::shared_ptr<const ast::Procedure> tree;
  std::shared_ptr<const Unit> unit;
  const ClassInfo* owner = nullptr;  // of a method
  std::shared_ptr<const Code> code;
};

struct ClassMember {
  static constexpr int none = -1;
  std::u16string name;
  bool isPrivate = false;
  int field = none;  // or procedure slots:
  int get = none;    // Sub, Function or Property Get
  int let = none;
  int set = none;
};

struct ClassInfo {
  const void* shape = nullptr;  // see Dispatch::Shape
  std::u16string name;
  std::vector<ClassMember> members;
  std::unordered_map<std::u16string, int> numbers;  // folded name to place in members
  struct Field {
    bool isArray = false;
    std::vector<std::int32_t> bounds;
  };
  std::vector<Field> fields;
  int defaultMember = ClassMember::none;
  int initialize = ClassMember::none;  // procedure slots
  int terminate = ClassMember::none;
  HeapShare share;  // of all this

  const ClassMember* Find(const std::u16string& folded) const;
};

class Symbols {
 public:
  Symbols();

  // A script's own names come first, then the library's, then the host's objects, then their members.
  std::optional<Symbol> Find(const std::u16string& folded) const;

  // Only what scripts declared.
  const Symbol* FindDeclared(const std::u16string& folded) const;

  std::size_t DeclareVariable(const std::u16string& folded);  // its place; the present one if there is one

  // A name that a statement of the top level assigns. Until that has happened a procedure that assigns it,
  // too, has a variable of its own.
  void AwaitVariable(const std::u16string& folded);

  // What has been assigned by now is awaited no longer.
  void Settle(const std::vector<Value>& globals);

  void Declare(const std::u16string& folded, Symbol symbol);

  // Classes have names of their own: Dim dog : Set dog = New Dog.
  void DeclareClass(const std::u16string& folded, std::size_t number);
  std::optional<std::size_t> FindClass(const std::u16string& folded) const;

  void AddObject(std::u16string_view name, Value object, bool membersAreGlobal);

  std::size_t Count() const { return declared_.size() + classes_.size(); }  // of names that scripts declared
  std::size_t VariableCount() const { return variables_; }
  template <class Call>
  void EachVariable(Call call) const {  // with its folded name and its place, in no order
    for (const auto& [name, symbol] : declared_) {
      if (symbol.kind == SymbolKind::Variable) call(name, symbol.number);
    }
  }
  const Builtin& BuiltinAt(std::size_t number) const { return *builtins_[number]; }

 private:
  std::unordered_map<std::u16string, Symbol> declared_;
  std::unordered_map<std::u16string, std::size_t> classes_;
  std::unordered_map<std::u16string, Symbol> library_;
  std::unordered_map<std::u16string, Symbol> objects_;
  std::vector<Value> withGlobalMembers_;
  std::vector<const Builtin*> builtins_;
  std::vector<std::u16string> awaited_;
  std::size_t variables_ = 0;
};

}  // namespace quarlin::vbs
