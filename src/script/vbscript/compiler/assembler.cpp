// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/compiler/assembler.h"

#include <algorithm>

namespace quarlin::vbs {
namespace {

bool SameConstant(const Value& left, const Value& right) {
  if (left.GetKind() != right.GetKind()) return false;
  switch (left.GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      return true;
    case Kind::Boolean:
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
    case Kind::Error:
      return left.AsWhole() == right.AsWhole();
    case Kind::Object:
      return left.AsObject() == right.AsObject();
    default:
      return false;
  }
}

Operand InInstruction(Operand operand) {
  return operand.space == Space::Parameter ? Operand::In(Space::Register, operand.number) : operand;
}

constexpr std::size_t constantsCompared = 64;  // a look further back would make long texts slow to compile

}  // namespace

Assembler::Assembler(std::shared_ptr<const std::u16string> source) : code_(std::make_shared<Code>()) {
  code_->source = std::move(source);
}

void Assembler::ReserveVariables(std::uint32_t count) {
  variables_ = top_ = code_->variables = count;
  code_->registers = std::max(code_->registers, count);
}

std::uint32_t Assembler::Emit(Op op, Operand a, Operand b, Operand c, std::uint32_t d, std::size_t count) {
  if (count > 0xFFFF) throw ScriptError(1001);
  Instruction& made = code_->instructions.emplace_back();
  made.op = op;
  made.count = count & 0xFFFF;
  made.d = d;
  made.a = InInstruction(a);
  made.b = InInstruction(b);
  made.c = InInstruction(c);
  return Here() - 1;
}

void Assembler::BeginPart(Position at) {
  if (!code_->marks.empty() && code_->marks.back().instruction == Here()) {
    code_->marks.back().at = at;
  } else {
    code_->marks.push_back({Here(), at});
  }
}

void Assembler::BeginStatement(Position at) {
  BeginPart(at);
  code_->marks.back().isStatement = true;
}

Operand Assembler::Constant(const Value& value) {
  auto& constants = code_->constants;
  const std::size_t first = constants.size() > constantsCompared ? constants.size() - constantsCompared : 0;
  for (std::size_t number = first; number < constants.size(); ++number) {
    if (SameConstant(constants[number], value)) return Operand::In(Space::Constant, number);
  }
  constants.push_back(value);
  return Operand::In(Space::Constant, constants.size() - 1);
}

std::uint32_t Assembler::SiteOf(std::u16string_view name, std::u16string_view object) {
  code_->sites.push_back({std::u16string(name), std::u16string(object)});
  return static_cast<std::uint32_t>(code_->sites.size() - 1);
}

std::uint32_t Assembler::ArrayOf(std::vector<std::int32_t> bounds) {
  code_->arrays.push_back(std::move(bounds));
  return static_cast<std::uint32_t>(code_->arrays.size() - 1);
}

std::uint32_t Assembler::Take(std::uint32_t count) {
  const std::uint32_t first = top_;
  top_ += count;
  code_->registers = std::max(code_->registers, top_);
  return first;
}

bool Assembler::IsResult(Operand operand) const {
  return operand.space == Space::Register && operand.number >= variables_;
}

void Assembler::MayHoldObject(Operand operand) {
  if (IsResult(operand)) holding_.push_back(operand.number);
}

void Assembler::Taken(Operand operand) {
  if (IsResult(operand)) std::erase(holding_, operand.number);
}

void Assembler::ClearHeldObjects() {
  if (holding_.empty()) return;
  const auto [first, last] = std::minmax_element(holding_.begin(), holding_.end());
  // Registers in between belong to results of the same statement, which is over.
  const std::uint32_t begin = std::max(*first, top_);
  if (*last >= begin) Emit(Op::Clear, {begin}, {}, {}, 0, *last - begin + 1);
  holding_.clear();
}

namespace {

template <class Item>
std::size_t BytesOf(const std::vector<Item>& items) {
  return items.capacity() * sizeof(Item);
}

}  // namespace

std::shared_ptr<Code> Assembler::Finish() {
  code_->share.Resize(sizeof(Code) + BytesOf(code_->instructions) + BytesOf(code_->constants) +
                      BytesOf(code_->sites) + BytesOf(code_->marks) + BytesOf(code_->names) +
                      BytesOf(code_->imports));
  return std::move(code_);
}

}  // namespace quarlin::vbs
