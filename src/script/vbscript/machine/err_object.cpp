// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/machine/err_object.h"

#include <array>

#include "script/values/arguments.h"
#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

constexpr std::int64_t highestNumber = 65535;

// The system's codes that have a number of their own in the language. Others stay what they are.
std::int32_t NumberOfCode(std::int32_t code) {
  const auto bits = static_cast<std::uint32_t>(code);
  if ((bits & 0xFFFF0000U) == 0x800A0000U) return static_cast<std::int32_t>(bits & 0xFFFFU);
  struct Row {
    std::uint32_t code;
    std::int32_t number;
  };
  static constexpr std::array<Row, 14> rows{{{0x80004001U, 445},
                                             {0x80004002U, 430},
                                             {0x80020003U, 438},
                                             {0x80020005U, 13},
                                             {0x80020006U, 438},
                                             {0x8002000AU, 6},
                                             {0x8002000BU, 9},
                                             {0x8002000EU, 450},
                                             {0x8002000FU, 449},
                                             {0x80030002U, 53},
                                             {0x80040154U, 429},
                                             {0x80070005U, 70},
                                             {0x8007000EU, 7},
                                             {0x80070057U, 5}}};
  for (const Row& row : rows) {
    if (row.code == bits) return row.number;
  }
  return code;
}

}  // namespace

std::span<const Member<ErrObject>> ErrObject::Members() {
  using Self = ErrObject;
  static constexpr std::array<Member<Self>, 7> members{{
      {u"Number", MemberKind::Property, 0, 0, [](Self& self, Arguments) { return Value::Long(self.Number); },
       [](Self& self, Arguments, const Value& value) { self.Number = ToLong(value); }, true},
      {u"Description", MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::String(self.Description); },
       [](Self& self, Arguments, const Value& value) { self.Description = ToText(value); }},
      {u"Source", MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::String(self.Source); },
       [](Self& self, Arguments, const Value& value) { self.Source = ToText(value); }},
      {u"HelpFile", MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::String(self.HelpFile); },
       [](Self& self, Arguments, const Value& value) { self.HelpFile = ToText(value); }},
      {u"HelpContext", MemberKind::Property, 0, 0,
       [](Self& self, Arguments) { return Value::Long(self.HelpContext); },
       [](Self& self, Arguments, const Value& value) { self.HelpContext = ToLong(value); }},
      {u"Clear", MemberKind::Method, 0, 0,
       [](Self& self, Arguments) {
         self.Clear();
         return Value();
       }},
      {u"Raise", MemberKind::Method, 1, 5,
       [](Self& self, Arguments arguments) -> Value { self.Raise(arguments); }},
  }};
  return members;
}

void ErrObject::Take(const ScriptError& error) {
  Number = error.number;
  Description = error.description;
  Source = error.source;
  HelpFile = error.helpFile;
  HelpContext = error.helpContext;
}

void ErrObject::Clear() {
  Number = 0;
  HelpContext = 0;
  for (std::u16string* text : {&Description, &Source, &HelpFile}) text->clear();
}

void ErrObject::Raise(Arguments arguments) {
  std::int32_t number = ToLong(arguments[0]);
  if (number == 0 || number > highestNumber) throw ScriptError(invalidCall);
  if (number < 0) number = NumberOfCode(number);
  ScriptError error(number);
  const auto choose = [&](std::size_t index, const std::u16string& kept, std::u16string& text) {
    if (const Value* given = Given(arguments, index)) {
      text = ToText(*given);
    } else if (!kept.empty()) {
      text = kept;
    }
  };
  choose(1, Source, error.source);
  choose(2, Description, error.description);
  choose(3, HelpFile, error.helpFile);
  if (const Value* context = Given(arguments, 4)) error.helpContext = ToLong(*context);
  throw error;
}

}  // namespace quarlin::vbs
