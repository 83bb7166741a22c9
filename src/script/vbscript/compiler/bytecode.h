// SPDX-License-Identifier: GPL-3.0-or-later
// What the compiler makes and the machine runs: instructions on places. Every variable of a procedure has
// a numbered register, and so has every intermediate result.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/heap_share.h"
#include "script/values/operators.h"
#include "script/values/value.h"
#include "script/vbscript/syntax/ast.h"

namespace quarlin::vbs {

// Where an operand lies.
enum class Space : std::uint32_t {
  Register,  // of the running procedure
  Constant,  // of the procedure
  Global,
  Field,     // of the object whose method runs
  Parameter  // a register that may hold a Reference to somebody else's place, which is then meant. Only the
             // compiler tells it from other registers: an instruction follows what it finds.
};

inline constexpr std::size_t spaces = static_cast<std::size_t>(Space::Parameter);  // of an instruction

struct Operand {
  std::uint32_t number = 0;  // in its space
  Space space = Space::Register;

  static constexpr Operand In(Space space, std::size_t number) {
    return {static_cast<std::uint32_t>(number), space};
  }
  bool operator==(const Operand&) const = default;
};

// `a` is the place of the result unless the comment says otherwise; R[n] is register n.
enum class Op : std::uint32_t {
  Load,      // a = b, whatever it is
  Take,      // a = b, a register that is read for the last time
  Let,       // a = the plain value of b; an array is copied
  LetTaken,  // the same of a register that is read for the last time
  Set,       // a = b, which must be an object
  SetTaken,
  Refer,  // R[a] = a Reference to b
  Clear,  // R[a] .. R[a + count - 1] become Empty
  Add,    // a = b op c; Add to Imp in the order of Operator
  Subtract,
  Multiply,
  Divide,
  IntegerDivide,
  Modulo,
  Power,
  Concatenate,
  Equal,  // comparisons: count is the Origin
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Is,
  And,
  Or,
  Xor,
  Eqv,
  Imp,
  Negate,  // a = -b
  Plus,    // a = +b
  Not,
  Jump,             // to instruction d
  JumpUnless,       // to d unless b is true
  JumpIf,           // to d if b is true
  JumpIfEqual,      // to d if the Case c fits b, count being the Origin
  JumpUnlessEqual,  // to d unless b op c, count being the Origin; in the order of the comparisons
  JumpUnlessNotEqual,
  JumpUnlessLess,
  JumpUnlessGreater,
  JumpUnlessLessEqual,
  JumpUnlessGreaterEqual,
  JumpBack,       // to d, after a look at whether the script may go on
  Index,          // a = b(R[c] ..), count indices; d: the site that names b, or noSite
  IndexOne,       // a = b(c); d as above
  ElementPlace,   // R[a] = a Reference to the element b(R[c] ..), count indices; b becomes an array of its
                  // own. Of an object, the value of its default member.
  PutIndex,       // a(R[c] ..) = b, count indices; Let
  PutIndexOne,    // a(c) = b; Let
  SetIndex,       // the same for Set
  PutBack,        // the element a(R[c] ..) = b if a holds an array: an element passed by reference
  GetMember,      // a = b.site[d]
  CallMember,     // a = b.site[d](R[c] ..), count arguments
  PutMember,      // b.site[d](R[c] ..) = a, count arguments; Let
  SetMember,      // the same for Set
  CallProcedure,  // a = procedure[d](R[c] ..)
  CallMethod,     // a = method[d] of the running object, (R[c] ..)
  CallBuiltin,    // a = builtin[d](R[c] ..)
  CallLate,       // a = whatever site[d] names at that time, called with (R[c] ..)
  RunMember,      // the four calls whose callee may be a procedure, where nobody wants the value
  RunProcedure,
  RunMethod,
  RunLate,
  ReadLate,      // a = what site[d] names at that time; Empty, or error 500 if count, when that is nothing
  PlaceLate,     // R[a] = a Reference to the variable that site[d] names at that time, or error 500
  ArgumentLate,  // R[a] = such a Reference, or the value where it is no variable
  Raise,         // error number b (a constant), culprit site[d]
  ReadyArray,    // a = a fixed array of declared[d]
  ReDim,         // a is sized to R[c] .., count bounds
  ReDimPreserve,
  Erase,       // a
  New,         // a = an object of the class site[d] names
  Me,          // a = the running object
  ForStart,    // a = b; R[c] = limit and R[c + 1] = step are there already; to d if there is no round
  ForNext,     // a += R[c + 1]; to d if there is another round
  EachStart,   // R[a] = the walk over b
  EachNext,    // a = the next item of the walk R[c]; to d behind the last
  ResumeNext,  // On Error Resume Next
  GoToZero,    // On Error GoTo 0
  Execute,     // run the text b in this procedure
  ExecuteGlobal,
  Eval,        // a = the value of the text b
  Reconsider,  // compile the procedure anew if one of its `awaited` has been assigned meanwhile
  GetRef,      // a = an object that calls the procedure named by b
  Return,
  Stop  // a debugger is told, then the operation of the mark that begins here is done
};

constexpr Op OpOf(Operator operation) {
  return static_cast<Op>(static_cast<int>(Op::Add) + static_cast<int>(operation));
}

constexpr Operator OperatorOf(Op op) {
  return static_cast<Operator>(static_cast<int>(op) - static_cast<int>(Op::Add));
}

// The jump that a comparison becomes where it is a condition.
constexpr Op JumpUnless(Op comparison) {
  return static_cast<Op>(static_cast<int>(Op::JumpUnlessEqual) + static_cast<int>(comparison) -
                         static_cast<int>(Op::Equal));
}

static_assert(OpOf(Operator::Add) == Op::Add && OpOf(Operator::Subtract) == Op::Subtract &&
              OpOf(Operator::Multiply) == Op::Multiply && OpOf(Operator::Divide) == Op::Divide &&
              OpOf(Operator::IntegerDivide) == Op::IntegerDivide && OpOf(Operator::Modulo) == Op::Modulo &&
              OpOf(Operator::Power) == Op::Power && OpOf(Operator::Concatenate) == Op::Concatenate &&
              OpOf(Operator::Equal) == Op::Equal && OpOf(Operator::NotEqual) == Op::NotEqual &&
              OpOf(Operator::Less) == Op::Less && OpOf(Operator::Greater) == Op::Greater &&
              OpOf(Operator::LessEqual) == Op::LessEqual &&
              OpOf(Operator::GreaterEqual) == Op::GreaterEqual && OpOf(Operator::Is) == Op::Is &&
              OpOf(Operator::And) == Op::And && OpOf(Operator::Or) == Op::Or &&
              OpOf(Operator::Xor) == Op::Xor && OpOf(Operator::Eqv) == Op::Eqv &&
              OpOf(Operator::Imp) == Op::Imp);
static_assert(JumpUnless(Op::NotEqual) == Op::JumpUnlessNotEqual &&
              JumpUnless(Op::Less) == Op::JumpUnlessLess &&
              JumpUnless(Op::Greater) == Op::JumpUnlessGreater &&
              JumpUnless(Op::LessEqual) == Op::JumpUnlessLessEqual &&
              JumpUnless(Op::GreaterEqual) == Op::JumpUnlessGreaterEqual);

inline constexpr std::uint32_t noSite = ~0U;

struct Instruction {
  Op op : 16 = Op::Return;  // with `count` in one word, so that neither has to be widened
  std::uint32_t count : 16 = 0;
  std::uint32_t d = 0;
  Operand a;
  Operand b;
  Operand c;
};

// A name that is looked up while the script runs, with what the last look-up found.
struct Site {
  std::u16string name;
  std::u16string object;  // the name of what it is a member of, where that is a plain name; for messages
  mutable const void* shape = nullptr;
  mutable int member = 0;
  mutable std::size_t method = noMethod;  // the slot of the public procedure that the member is, if so
  static constexpr std::size_t noMethod = ~std::size_t{0};
};

// Where a statement, or a part of one that Resume Next goes on with, begins.
struct Mark {
  std::uint32_t instruction;
  Position at;
  bool isStatement = false;       // a debugger can stop here
  mutable Op stopped = Op::Stop;  // the operation that a Stop stands in the place of
};

struct NamedPlace {
  std::u16string name;  // folded
  Operand place;
};

// One procedure, the top level of a text, or a text given to Execute.
struct Code {
  std::u16string name;
  mutable std::vector<Instruction> instructions;  // a debugger's stops come and go
  std::vector<Value> constants;
  std::vector<Site> sites;
  std::vector<Mark> marks;                        // in ascending order
  std::vector<std::vector<std::int32_t>> arrays;  // bounds of the fixed arrays
  std::vector<NamedPlace> names;                  // what Execute inside it can see
  std::vector<std::u16string> assumed;  // variables that are its own only because nothing else had the name
  std::vector<std::size_t> awaited;     // globals of such a name: theirs once the top level has assigned them
  std::vector<NamedPlace> imports;      // of a text given to Execute: names of the procedure around it
  std::uint32_t parameters = 0;
  std::vector<std::uint32_t> byValue;  // the numbers of the parameters by value
  std::uint32_t variables =
      0;  // the registers below, which are Empty at the start; the rest is written first
  std::uint32_t registers = 0;
  std::uint32_t result = 0;  // the register that holds the function's value at the end
  std::shared_ptr<const std::u16string> source;
  HeapShare share;  // of what is above
};

// Without regard to case, as the names of the language are; for keys.
std::u16string Folded(std::u16string_view name);

}  // namespace quarlin::vbs
