// SPDX-License-Identifier: GPL-3.0-or-later
// Entering and leaving procedures, done so often that the loop has it inside itself.
#pragma once

#include <utility>

#include "script/vbscript/machine/machine.h"

namespace quarlin::vbs {

inline const Code& Machine::CodeOf(std::size_t number) {
  if (!slots_[number].code) CompileSlot(number);
  return *slots_[number].code;
}

inline Value* Machine::Top() {
  return frames_.Empty() ? stack_.Begin() : frames_.Back().registers + frames_.Back().code->registers;
}

[[gnu::always_inline]] inline void Machine::Push(const Code& code, Value* registers, std::size_t arguments,
                                                 Instance* me, Operand result, bool throwsResultAway) {
  if (frames_.Full()) throw ScriptError(outOfStackSpace);
  stack_.Reach(registers + code.registers);
  for (std::size_t i = arguments; i < code.variables; ++i) registers[i].Clear();
  if (code.takesValues) CopyByValue(code, registers, arguments);
  if (me != nullptr) me->AddReference();
  frames_.Push(code, registers, me, result, throwsResultAway);
}

// Ends the innermost procedure and gives its value. Objects whose last reference goes here run their
// Class_Terminate while the frame is still there.
[[gnu::always_inline]] inline Value Machine::Pop() noexcept {
  Frame& frame = frames_.Back();
  Value result = std::move(frame.registers[frame.code->result]);
  for (Value* reg = frame.registers; reg < frame.registers + frame.code->registers; ++reg) {
    if (reg->GetKind() >= Kind::Reference) reg->Clear();
  }
  frame.extras.reset();
  Instance* me = frame.me;
  frames_.Pop();
  if (me != nullptr) me->RemoveReference();
  return result;
}

[[gnu::always_inline]] inline void Machine::Enter(std::size_t slot, Value* arguments, std::size_t count,
                                                  Instance* me, Operand result, bool throwsResultAway) {
  const Code& code = CodeOf(slot);
  if (count != code.parameters) throw ScriptError(wrongArgumentCount, slots_[slot].name);
  Push(code, arguments, count, me, result, throwsResultAway);
}

}  // namespace quarlin::vbs
