// SPDX-License-Identifier: GPL-3.0-or-later
// A machine's own side of its debugger: puts the stops into code and takes them out, and shows the machine
// while it stands.
#pragma once

#include "script/vbscript/machine/machine.h"

namespace quarlin::vbs {

class Machine::Debugging final : public Standing {
 public:
  Debugging(Machine& machine, DebugHook& hook) : machine_(machine), hook_(hook) {}
  ~Debugging() override { StopAt({}); }
  Debugging(const Debugging&) = delete;
  Debugging& operator=(const Debugging&) = delete;

  void StopAt(StopsAt stops);

  // Code is about to run for the first time.
  void Follow(const Code& code) const;

  void AtStatement();
  // The hook may put another error in the place of this one.
  void Failed(ScriptError& error);

  // A look at whether the script may go on: an expression that takes too long may not.
  void CountLook();

  std::size_t Depth() const override { return machine_.frames_.Size(); }
  CallView CallAt(std::size_t call) const override;
  std::vector<NamedValue> Locals(std::size_t call) override;
  std::vector<NamedValue> Globals() override;
  Value Evaluate(std::size_t call, std::u16string_view expression) override;

 private:
  class Evaluation;

  const std::u16string& Spelled(const std::u16string& folded);

  Frame& FrameOf(std::size_t call) const { return machine_.frames_[machine_.frames_.Size() - 1 - call]; }
  bool OfScript(const Code& code) const { return code.source == machine_.script_; }

  Machine& machine_;
  DebugHook& hook_;
  StopsAt stops_;
  std::unordered_map<std::u16string, std::u16string> spellings_;  // of folded names
  bool evaluating_ = false;
  int looksLeft_ = 0;  // while an expression is evaluated
};

}  // namespace quarlin::vbs
