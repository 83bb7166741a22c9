// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/wscript_object.h"

#include <array>
#include <limits>
#include <span>
#include <utility>

#include "script/script_host.h"
#include "script/script_text.h"
#include "script/values/arguments.h"
#include "script/values/conversions.h"
#include "script/word_list.h"

namespace quarlin {
namespace {

using enum vbs::MemberKind;
using vbs::Arguments;
using vbs::Value;

// The standard output or the standard error of a script.
class OutStream : public vbs::TableObject<OutStream> {
 public:
  OutStream(std::function<void(std::u16string_view)> write, std::u16string_view lineEnd)
      : write_(std::move(write)), lineEnd_(lineEnd) {}

  static std::span<const vbs::Member<OutStream>> Members();
  std::u16string_view TypeName() const override { return u"TextStream"; }

 private:
  static Value Write(OutStream& self, Arguments arguments);
  static Value WriteLine(OutStream& self, Arguments arguments);
  static Value WriteBlankLines(OutStream& self, Arguments arguments);

  std::function<void(std::u16string_view)> write_;
  std::u16string lineEnd_;
};

std::span<const vbs::Member<OutStream>> OutStream::Members() {
  static constexpr std::array members = std::to_array<vbs::Member<OutStream>>({
      {u"Write", Method, 1, 1, Write},
      {u"WriteLine", Method, 0, 1, WriteLine},
      {u"WriteBlankLines", Method, 1, 1, WriteBlankLines},
      {u"Close", Method, 0, 0, [](OutStream&, Arguments) { return Value(); }},
  });
  return members;
}

Value OutStream::Write(OutStream& self, Arguments arguments) {
  self.write_(vbs::ToText(arguments[0]));
  return Value();
}

Value OutStream::WriteLine(OutStream& self, Arguments arguments) {
  const Value* text = vbs::Given(arguments, 0);
  self.write_((text == nullptr ? std::u16string() : std::u16string(vbs::ToText(*text))) + self.lineEnd_);
  return Value();
}

Value OutStream::WriteBlankLines(OutStream& self, Arguments arguments) {
  const std::int32_t count = vbs::ChoiceOr(arguments, 0, 0, 0, 10'000);
  for (std::int32_t i = 0; i < count; ++i) self.write_(self.lineEnd_);
  return Value();
}

class WScript : public vbs::TableObject<WScript> {
 public:
  explicit WScript(ScriptHost& host) : host_(host) {}

  static std::span<const vbs::Member<WScript>> Members();
  std::u16string_view TypeName() const override { return u"WScript"; }

  // Scripts have procedures and variables of such names.
  std::optional<int> FindBare(std::u16string_view) override { return std::nullopt; }

 private:
  static Value Echo(WScript& self, Arguments arguments);
  static Value Sleep(WScript& self, Arguments arguments);
  static Value Quit(WScript& self, Arguments arguments);

  ScriptHost& host_;
};

std::span<const vbs::Member<WScript>> WScript::Members() {
  static constexpr std::array members = std::to_array<vbs::Member<WScript>>({
      {u"Echo", Method, 0, std::numeric_limits<int>::max(), Echo},
      {u"Sleep", Method, 1, 1, Sleep},
      {u"Quit", Method, 0, 1, Quit},
      {u"CreateObject", Method, 1, 1,
       [](WScript& self, Arguments arguments) {
         return Value::Object(self.host_.Runner().Make(vbs::ToText(arguments[0])));
       }},
      {u"Arguments", Property, 0, 0,
       [](WScript& self, Arguments) { return Value::Object(new WordList(self.host_.Console.arguments)); }},
      {u"ScriptName", Property, 0, 0,
       [](WScript& self, Arguments) {
         return Value::String(vbs::Utf16Of(self.host_.Runner().File().filename().string()));
       }},
      {u"ScriptFullName", Property, 0, 0,
       [](WScript& self, Arguments) {
         return Value::String(vbs::Utf16Of(self.host_.Runner().File().string()));
       }},
      {u"StdOut", Property, 0, 0,
       [](WScript& self, Arguments) {
         const ScriptConsole& console = self.host_.Console;
         return Value::Object(new OutStream(console.out, console.lineEnd));
       }},
      {u"StdErr", Property, 0, 0,
       [](WScript& self, Arguments) {
         const ScriptConsole& console = self.host_.Console;
         return Value::Object(new OutStream(console.error, console.lineEnd));
       }},
  });
  return members;
}

// Whoever echoes a value wants to know what it is, so Null is no error here.
std::u16string Echoed(const Value& value) {
  if (value.IsMissing()) return {};
  const Value plain = vbs::Plain(value);
  return plain.IsNull() ? u"null" : std::u16string(vbs::ToText(plain));
}

Value WScript::Echo(WScript& self, Arguments arguments) {
  std::u16string line;
  for (const Value& argument : arguments) {
    if (&argument != arguments.data()) line += u' ';
    line += Echoed(argument);
  }
  line += self.host_.Console.lineEnd;
  self.host_.Console.out(line);
  return Value();
}

Value WScript::Sleep(WScript& self, Arguments arguments) {
  self.host_.Waits().Sleep(vbs::ToLong(arguments[0]));
  return Value();
}

// A status that a program cannot have is an error all the same.
Value WScript::Quit(WScript& self, Arguments arguments) {
  const std::int32_t status = vbs::CountOr(arguments, 0, 0);
  self.host_.Finish(status >= 0 && status <= 255 ? status : 255);
}

}  // namespace

vbs::ObjectRef MakeWScriptObject(ScriptHost& host) {
  return vbs::ObjectRef(new WScript(host));
}

}  // namespace quarlin
