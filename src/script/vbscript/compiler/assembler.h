// SPDX-License-Identifier: GPL-3.0-or-later
// Puts the instructions of one Code together: registers for intermediate results, constants without
// duplicates, jumps that are filled in later.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "script/vbscript/compiler/bytecode.h"

namespace quarlin::vbs {

class Assembler {
 public:
  explicit Assembler(std::shared_ptr<const std::u16string> source);

  // The registers below `count` are variables; results in between lie above them.
  void ReserveVariables(std::uint32_t count);

  std::uint32_t Emit(Op op, Operand a = {}, Operand b = {}, Operand c = {}, std::uint32_t d = 0,
                     std::size_t count = 0);
  std::uint32_t Here() const { return static_cast<std::uint32_t>(code_->instructions.size()); }
  void JumpHere(std::uint32_t instruction) { code_->instructions[instruction].d = Here(); }
  void BeginStatement(Position at);
  void BeginPart(Position at);  // what Resume Next goes on with within a statement

  Operand Constant(const Value& value);
  std::uint32_t SiteOf(std::u16string_view name, std::u16string_view object = {});
  std::uint32_t ArrayOf(std::vector<std::int32_t> bounds);

  // Intermediate results are a stack: take, use, go back to the mark.
  std::uint32_t Mark() const { return top_; }
  void BackTo(std::uint32_t mark) { top_ = mark; }
  std::uint32_t Take(std::uint32_t count = 1);
  bool IsResult(Operand operand) const;  // rather than a variable or a constant

  // A result that may hold an object is emptied when its statement ends, so that the object goes in time.
  void MayHoldObject(Operand operand);
  void Taken(Operand operand);
  void ClearHeldObjects();

  Code& Made() { return *code_; }
  std::shared_ptr<Code> Finish();

 private:
  std::shared_ptr<Code> code_;
  std::uint32_t variables_ = 0;
  std::uint32_t top_ = 0;
  std::vector<std::uint32_t> holding_;
};

}  // namespace quarlin::vbs
