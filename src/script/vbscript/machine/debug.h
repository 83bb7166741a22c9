// SPDX-License-Identifier: GPL-3.0-or-later
// How a debugger follows a machine: it is told when a script comes to a statement that it asked for, and the
// machine stands until that call returns.
//
// A statement that is watched has Op::Stop in the place of its first operation, and the operation itself in
// its mark. So a script without such a statement runs as if nobody followed it, and one that is in the
// middle of a loop meets a stop that is set now.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "script/values/error.h"
#include "script/values/value.h"

namespace quarlin::vbs {

// A procedure on the stack.
struct CallView {
  std::u16string procedure;  // empty for top-level code
  Position at;               // the statement that it is at
  bool ofScript = false;     // its text is the script's own, not one given to Execute
};

struct NamedValue {
  std::u16string name;  // as the script spells it first
  Value value;
};

// A machine that stands, for as long as the call of the hook lasts. The values it gives are let go of by
// then: their objects must not live longer than the script meant them to.
class Standing {
 public:
  virtual ~Standing() = default;

  // The procedures that run; `call`, here and below, counts them from the innermost, which is 0.
  virtual std::size_t Depth() const = 0;
  virtual CallView CallAt(std::size_t call) const = 0;

  // Parameters and variables in the order in which they are declared, "Me" in front of them; of top-level
  // code none, as its variables are global.
  virtual std::vector<NamedValue> Locals(std::size_t call) = 0;
  virtual std::vector<NamedValue> Globals() = 0;

  // The value of an expression as that procedure would see it. Throws ScriptError, 500 for a name that is
  // not there. What the expression calls runs, stops at nothing, and is ended when it takes too long.
  virtual Value Evaluate(std::size_t call, std::u16string_view expression) = 0;
};

// Which statements of the script are told of.
struct StopsAt {
  bool everyStatement = false;
  std::set<int> lines;  // the first statement of each

  bool operator==(const StopsAt&) const = default;
  bool None() const { return !everyStatement && lines.empty(); }
};

// A debugger. Its calls may yield and may throw a final ScriptError, which ends the script.
class DebugHook {
 public:
  virtual ~DebugHook() = default;

  // The statement of the innermost call comes next.
  virtual void AtStatement(Standing& standing) = 0;

  // The innermost call has failed. `caught`: a procedure further out goes on after errors.
  virtual void AtError(Standing& standing, const ScriptError& error, bool caught) = 0;
};

}  // namespace quarlin::vbs
