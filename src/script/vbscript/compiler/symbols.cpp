// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/compiler/symbols.h"

#include <array>
#include <utility>

#include "script/values/conversions.h"

namespace quarlin::vbs {

std::u16string Folded(std::u16string_view name) {
  std::u16string folded(name);
  for (char16_t& unit : folded) {
    if (unit >= u'A' && unit <= u'Z') {
      unit = static_cast<char16_t>(unit + 32);
    } else if (unit > 0x7F) {
      unit = LowerOf(unit);
    }
  }
  return folded;
}

const ClassMember* ClassInfo::Find(const std::u16string& folded) const {
  const auto found = numbers.find(folded);
  return found == numbers.end() ? nullptr : &members[static_cast<std::size_t>(found->second)];
}

Symbols::Symbols() {
  for (const auto topic : {StringFunctions(), MathFunctions(), ConversionFunctions(), DateFunctions(),
                           FormatFunctions(), ArrayFunctions(), InteractionFunctions()}) {
    for (const Builtin& builtin : topic) {
      library_[Folded(builtin.name)] = {SymbolKind::Builtin, builtins_.size(), {}};
      builtins_.push_back(&builtin);
    }
  }
  for (const NamedConstant& constant : LibraryConstants()) {
    library_[Folded(constant.name)] = {SymbolKind::Constant, 0, constant.value};
  }
  constexpr std::array<std::pair<std::u16string_view, SpecialName>, 4> specials{
      {{u"execute", SpecialName::Execute},
       {u"executeglobal", SpecialName::ExecuteGlobal},
       {u"eval", SpecialName::Eval},
       {u"getref", SpecialName::GetRef}}};
  for (const auto& [name, special] : specials) {
    library_[std::u16string(name)] = {SymbolKind::Special, static_cast<std::size_t>(special), {}};
  }
}

std::optional<Symbol> Symbols::Find(const std::u16string& folded) const {
  for (const auto* table : {&declared_, &library_, &objects_}) {
    if (const auto found = table->find(folded); found != table->end()) return found->second;
  }
  for (const Value& object : withGlobalMembers_) {
    if (object.AsObject()->FindBare(folded)) return Symbol{SymbolKind::HostMember, 0, object};
  }
  return std::nullopt;
}

const Symbol* Symbols::FindDeclared(const std::u16string& folded) const {
  const auto found = declared_.find(folded);
  return found == declared_.end() ? nullptr : &found->second;
}

std::size_t Symbols::DeclareVariable(const std::u16string& folded) {
  const auto found = declared_.find(folded);
  if (found != declared_.end() && found->second.kind == SymbolKind::Variable) {
    found->second.awaited = false;
    return found->second.number;
  }
  declared_[folded] = {SymbolKind::Variable, variables_, {}};
  return variables_++;
}

void Symbols::AwaitVariable(const std::u16string& folded) {
  declared_[folded] = {SymbolKind::Variable, variables_++, {}, true};
  awaited_.push_back(folded);
}

void Symbols::Settle(const std::vector<Value>& globals) {
  std::erase_if(awaited_, [&](const std::u16string& name) {
    Symbol& symbol = declared_[name];
    symbol.awaited = symbol.awaited && globals[symbol.number].IsUntouched();
    return !symbol.awaited;
  });
}

void Symbols::Declare(const std::u16string& folded, Symbol symbol) {
  declared_[folded] = std::move(symbol);
}

void Symbols::DeclareClass(const std::u16string& folded, std::size_t number) {
  classes_[folded] = number;
}

std::optional<std::size_t> Symbols::FindClass(const std::u16string& folded) const {
  const auto found = classes_.find(folded);
  return found == classes_.end() ? std::nullopt : std::optional(found->second);
}

void Symbols::AddObject(std::u16string_view name, Value object, bool membersAreGlobal) {
  if (membersAreGlobal) withGlobalMembers_.push_back(object);
  objects_[Folded(name)] = {SymbolKind::Object, 0, std::move(object)};
}

}  // namespace quarlin::vbs
