// SPDX-License-Identifier: GPL-3.0-or-later
// A script taken apart: what the parser hands to the compiler.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "script/values/error.h"
#include "script/values/heap.h"
#include "script/values/operators.h"
#include "script/values/value.h"

namespace quarlin::vbs::ast {

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

enum class ExpressionKind {
  Literal,  // value (also Nothing, Empty, Null, True, False, dates)
  Name,     // name
  Me,
  Member,       // operands[0] . name; no operands: ".name" inside With
  Call,         // operands[0] is what is called or indexed, the rest are arguments; `S()` has none
  Omitted,      // an argument that was left out: f(1, , 3)
  Parenthesis,  // (operands[0]); by value where it is a whole argument
  Negate,
  Plus,  // +x, which is x
  Not,
  Binary,  // operands[0] operation operands[1]
  New      // name
};

struct Expression : heap::Counts {
  ExpressionKind kind;
  Position at;
  Value value;
  std::u16string name;  // as written, brackets removed
  Operator operation = Operator::Add;
  std::vector<ExpressionPtr> operands;
};

struct Statement;
using StatementPtr = std::unique_ptr<Statement>;
using Block = std::vector<StatementPtr>;

struct Declarator {
  std::u16string name;
  Position at;
  bool isArray = false;
  std::vector<ExpressionPtr> bounds;  // none: "Dim a()"
};

enum class StatementKind {
  Dim,      // declarators with literal bounds; also Public and Private at script level
  ReDim,    // declarators with their bounds, `preserve`; expressions[i] (a name or a member) is what is sized
  Const,    // declarators[i] = expressions[i] (literals, perhaps with a sign)
  Let,      // expressions[0] = expressions[1]
  Set,      // Set expressions[0] = expressions[1]
  Call,     // expressions[0] is a Name, Member or Call, done for its effect. `S 1, 2` is a Call expression
            // too; `S (x)` one whose only argument is a Parenthesis, but Call S(x) one without
  If,       // branches (condition and block), otherwise in `otherwise`
  Select,   // expressions[0]; branches with the case's `tests`, otherwise in `otherwise`
  For,      // expressions: counter, from, to, perhaps step; body
  ForEach,  // expressions: item, collection; body
  While,    // expressions[0]; body: While ... Wend
  Do,       // `loop` says which; expressions[0] where there is a condition; body
  With,     // expressions[0]; body
  Exit,     // exit
  OnError,  // resumeNext
  Erase,    // expressions
  Nop       // a label-less empty statement that has a place of its own
};

enum class LoopKind { Forever, WhileFirst, UntilFirst, WhileLast, UntilLast };
enum class ExitKind { Do, For, Sub, Function, Property };

// An If or ElseIf with its condition, or a Case with its tests.
struct Branch {
  Position at;
  std::vector<ExpressionPtr> tests;
  Block body;
};

struct Statement : heap::Counts {
  StatementKind kind;
  Position at;     // where it begins
  Position endAt;  // of a loop: its Loop, Next or Wend; of a block: its End line
  std::vector<ExpressionPtr> expressions;
  std::vector<Declarator> declarators;
  std::vector<Branch> branches;
  Block body;
  Block otherwise;
  bool hasOtherwise = false;
  bool preserve = false;
  bool resumeNext = false;
  bool isPrivate = false;
  LoopKind loop = LoopKind::Forever;
  ExitKind exit = ExitKind::Sub;
};

struct Parameter {
  std::u16string name;
  bool byValue = false;
  bool isArray = false;  // written with (), which changes nothing
};

enum class ProcedureKind { Sub, Function, PropertyGet, PropertyLet, PropertySet };

struct Procedure {
  ProcedureKind kind = ProcedureKind::Sub;
  std::u16string name;
  Position at;
  Position endAt;  // of End Sub
  bool isPrivate = false;
  bool isDefault = false;
  std::vector<Parameter> parameters;
  Block body;
};

struct Class {
  std::u16string name;
  Position at;
  struct Field {
    Declarator declarator;
    bool isPrivate = false;
  };
  std::vector<Field> fields;
  std::vector<Procedure> procedures;
};

// One text that was compiled: a script, or what Execute was given. Procedures and classes stand apart
// from the statements, wherever they were written, since they count from the start.
struct Program {
  bool optionExplicit = false;
  Block body;
  std::vector<Procedure> procedures;
  std::vector<Class> classes;
};

}  // namespace quarlin::vbs::ast
