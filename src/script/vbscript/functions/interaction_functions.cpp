// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "script/library/create_object.h"
#include "script/values/arguments.h"
#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {
namespace {

// An optional text as a value, which holds it while a box lets events run.
Value TextOr(Arguments arguments, std::size_t index, std::u16string_view otherwise) {
  const Value* given = Given(arguments, index);
  return given == nullptr ? Value::String(otherwise) : ToTextValue(*given);
}

constexpr std::u16string_view ordinaryTitle = u"VBScript";

Value MsgBox(LibraryContext& context, Arguments arguments) {
  const Value text = ToTextValue(arguments[0]);
  const std::int32_t style = CountOr(arguments, 1, 0);
  const Value title = TextOr(arguments, 2, ordinaryTitle);
  const int button = context.services.MsgBox(text.AsText(), style, title.AsText());
  return Value::Integer(static_cast<std::int16_t>(button));
}

// The arguments behind the proposal tell where the box appears, which is the window system's business.
Value InputBox(LibraryContext& context, Arguments arguments) {
  const Value prompt = ToTextValue(arguments[0]);
  const Value title = TextOr(arguments, 1, ordinaryTitle);
  const Value proposal = TextOr(arguments, 2, u"");
  const auto answer = context.services.InputBox(prompt.AsText(), title.AsText(), proposal.AsText());
  return answer ? Value::String(*answer) : Value();
}

Value CreateObject(LibraryContext& context, Arguments arguments) {
  const GivenText programId(arguments[0]);
  return Value::Object(CreateLibraryObject(context.services, context.holders, programId.View()));
}

// There are no objects of other programs to be had.
Value GetObject(LibraryContext&, Arguments arguments) {
  const Value* wanted = Given(arguments, 1);
  throw ScriptError(cannotCreateObject, GivenText(wanted == nullptr ? arguments[0] : *wanted).View());
}

Value ScriptEngine(LibraryContext&, Arguments) {
  return Value::String(u"VBScript");
}

Value GetLocale(LibraryContext& context, Arguments) {
  return Value::Long(context.locale.Chosen().number);
}

// A number, or a text with a name or a number; 0 stands for the one that the script began with.
const Locale& WantedLocale(const LocaleChoice& choice, const Value& wanted) {
  const Value plain = Plain(wanted);
  if (!plain.IsString() && ToLong(plain) == 0) return choice.Start();
  const Locale* found = plain.IsString() ? FindLocale(plain.AsText()) : FindLocale(ToLong(plain));
  if (found == nullptr) throw ScriptError(noSuchLocale, ToText(plain));
  return *found;
}

// The number of the locale so far.
Value SetLocale(LibraryContext& context, Arguments arguments) {
  Value before = GetLocale(context, {});
  const Value* wanted = Given(arguments, 0);
  LocaleChoice& choice = context.locale;
  choice.Choose(wanted == nullptr ? choice.Start() : WantedLocale(choice, *wanted));
  return before;
}

// The version whose language this is: scripts ask before they use what came late.
template <std::int32_t number>
Value Number(LibraryContext&, Arguments) {
  return Value::Long(number);
}

constexpr auto functions = std::to_array<Builtin>({
    {u"CreateObject", 1, 2, CreateObject},
    {u"GetLocale", 0, 0, GetLocale},
    {u"GetObject", 1, 2, GetObject},
    {u"InputBox", 1, 7, InputBox},
    {u"MsgBox", 1, 5, MsgBox},
    {u"ScriptEngine", 0, 0, ScriptEngine},
    {u"ScriptEngineBuildVersion", 0, 0, Number<0>},
    {u"ScriptEngineMajorVersion", 0, 0, Number<5>},
    {u"ScriptEngineMinorVersion", 0, 0, Number<8>},
    {u"SetLocale", 0, 1, SetLocale},
});

}  // namespace

std::span<const Builtin> InteractionFunctions() {
  return functions;
}

}  // namespace quarlin::vbs
