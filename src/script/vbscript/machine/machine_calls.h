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
  return frames_.Empty() ? stack_.Begin() : frames_.Back().Registers() + frames_.Back().code->registers;
}

[[gnu::always_inline]] inline void Machine::Push(const Code& code, Value* registers, std::size_t arguments,
                                                 Instance* me, Value* result) {
  if (frames_.Full()) throw ScriptError(outOfStackSpace);
  stack_.Reach(registers + code.registers);
  if (me != nullptr) me->AddReference();  // before anything can go that held it
  Value* const end = registers + code.variables;
  for (Value* reg = registers + arguments; reg != end; ++reg) reg->Clear();
  for (const std::uint32_t parameter : code.byValue) {
    Value& given = registers[parameter];
    if (given.Is(Kind::Reference)) given = Value(given.Place());
  }
  // Constants are only read; the table holds them beside what is written.
  auto* const constants = const_cast<Value*>(code.constants.data());
  Value* const fields = me == nullptr ? nullptr : me->Fields().data();
  frames_.Push(code, {registers, constants, globals_.data(), fields}, me, result);
}

// Ends the innermost procedure, which is `frame`, and gives its value. Objects whose last reference goes here
// run their Class_Terminate while the frame is still there.
[[gnu::always_inline]] inline Value Machine::Leave(Frame& frame) noexcept {
  Value* const registers = frame.Registers();
  Value result = std::move(registers[frame.code->result]);
  const Value* const end = registers + frame.code->registers;
  for (Value* reg = registers; reg != end; ++reg) {
    if (reg->GetKind() >= Kind::Reference) [[unlikely]]
      reg->Clear();
  }
  if (frame.extras) [[unlikely]]
    frame.extras.reset();
  Instance* const me = frame.me;
  frames_.BackTo(frame);
  if (me != nullptr) me->RemoveReference();
  return result;
}

[[gnu::always_inline]] inline void Machine::Enter(std::size_t slot, Value* arguments, std::size_t count,
                                                  Instance* me, Value* result) {
  const Code& code = CodeOf(slot);
  if (count != code.parameters) throw ScriptError(wrongArgumentCount, slots_[slot].name);
  Push(code, arguments, count, me, result);
}

}  // namespace quarlin::vbs
