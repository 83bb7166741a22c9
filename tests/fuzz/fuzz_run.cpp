// SPDX-License-Identifier: GPL-3.0-or-later
// Random programs, run for a bounded number of steps and in bounded memory, end in order. The bytes choose
// statements and expressions, so that most programs compile. No program here can reach a file.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "script/values/heap.h"
#include "script/vbscript/machine/engine.h"
#include "support/quiet_services.h"

namespace quarlin::vbs {
namespace {

constexpr std::array<std::u16string_view, 12> names{u"a", u"b", u"c",    u"d",    u"x",     u"F",
                                                    u"S", u"o", u"Prop", u"Item", u"Count", u"dict"};
constexpr std::array<std::u16string_view, 24> operators{
    u"+",  u"-",  u"*",     u"/",    u"\\",    u" Mod ", u"^",     u"&",    u"=", u"<>", u"<", u">",
    u"<=", u">=", u" And ", u" Or ", u" Xor ", u" Eqv ", u" Imp ", u" Is ", u"+", u"&",  u"=", u"-"};
constexpr std::array<std::u16string_view, 26> literals{
    u"0",           u"1",
    u"-1",          u"2.5",
    u"32767",       u"2147483647",
    u"1E308",       u"\"\"",
    u"\"12\"",      u"\"abc\"",
    u"True",        u"Null",
    u"Empty",       u"Nothing",
    u"#1/31/2024#", u"&HFFFF",
    u"vbCrLf",      u"Array(3, 1, 2)",
    u"New K",       u"CCur(\"922337203685477.5807\")",
    u"CByte(255)",  u"GetRef(\"F\")",
    u"1031",        u"\"1,5\"",
    u"Err",         u"CreateObject(\"Scripting.Dictionary\")"};
constexpr std::array<std::u16string_view, 44> functions{
    u"Len",      u"Mid",       u"Left",       u"Right",    u"InStr",  u"InStrRev",     u"Replace",
    u"Split",    u"Join",      u"Filter",     u"Array",    u"UBound", u"LBound",       u"CInt",
    u"CLng",     u"CDbl",      u"CStr",       u"CDate",    u"CCur",   u"Hex",          u"Oct",
    u"Round",    u"Int",       u"SetLocale",  u"Rnd",      u"Chr",    u"Asc",          u"String",
    u"Space",    u"DateAdd",   u"DateDiff",   u"DatePart", u"Format", u"FormatNumber", u"FormatDateTime",
    u"TypeName", u"IsNumeric", u"StrReverse", u"Eval",     u"F",      u"o.Prop",       u"DateSerial",
    u"StrComp",  u"Sqr"};

class Writer {
 public:
  Writer(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::u16string Program() {
    if (Next() % 4 == 0) text_ = u"Option Explicit\r\nExecuteGlobal \"Dim b, c, d, x, o, Prop, Item\"\r\n";
    text_ +=
        u"Class K : Public Count : Private m : Public Default Property Get Prop(i) : Prop = m : End "
        u"Property\r\n"
        u"Public Property Let Prop(i, v) : m = v : End Property\r\n"
        u"Private Sub Class_Terminate : x = x & \"t\" : If IsEmpty(b) Then Set d = Me\r\nEnd Sub : End "
        u"Class\r\nDim a(3), dict\r\n"
        u"Set dict = CreateObject(\"Scripting.Dictionary\")\r\nSet o = New K\r\n";
    if (Next() % 2 == 0) text_ += u"On Error Resume Next\r\n";
    Block(0);
    text_ += u"Function F(p)\r\n";
    if (Next() % 2 == 0) text_ += u"On Error Resume Next\r\n";
    Block(1);
    text_ += u"F = " + Expression(0) + u"\r\nEnd Function\r\nSub S(ByVal p, q)\r\n";
    Block(1);
    text_ += u"End Sub\r\n";
    return text_;
  }

 private:
  unsigned Next() { return at_ < size_ ? data_[at_++] : 0U; }
  template <std::size_t count>
  std::u16string Pick(const std::array<std::u16string_view, count>& words) {
    return std::u16string(words[Next() % count]);
  }

  std::u16string Expression(int depth) {
    const unsigned choice = Next() % 8;
    if (depth > 4 || choice < 2) return Pick(literals);
    if (choice < 4) return Pick(names);
    if (choice == 4) return Pick(names) + u"(" + Expression(depth + 1) + u")";
    if (choice == 5) return (Next() % 2 == 0 ? u"-" : u"Not ") + Expression(depth + 1);
    if (choice == 6) {
      std::u16string call = Pick(functions) + u"(" + Expression(depth + 1);
      for (unsigned more = Next() % 3; more > 0; --more) call += u", " + Expression(depth + 1);
      return call + u")";
    }
    return u"(" + Expression(depth + 1) + Pick(operators) + Expression(depth + 1) + u")";
  }

  void Block(int depth) {
    for (unsigned count = Next() % 6; count > 0 && at_ < size_; --count) Statement(depth);
  }

  void Within(std::u16string_view begin, std::u16string_view end, int depth) {
    text_ += std::u16string(begin) + u"\r\n";
    if (depth < 4) Block(depth + 1);
    text_ += std::u16string(end) + u"\r\n";
  }

  void Statement(int depth) {
    switch (Next() % 20) {
      case 0:
        return Within(u"If " + Expression(0) + u" Then", u"End If", depth);
      case 1:
        return Within(u"For " + Pick(names) + u" = " + Expression(2) + u" To " + Expression(2), u"Next",
                      depth);
      case 2:
        return Within(u"For Each x In " + Expression(1), u"Next", depth);
      case 3:
        return Within(u"Do While " + Expression(0), u"Exit Do : Loop", depth);
      case 4:
        return Within(u"With " + Expression(2), u".Prop(1) = .Count : End With", depth);
      case 5:
        return Within(u"Select Case " + Expression(1) + u"\r\nCase " + Expression(1), u"End Select", depth);
      case 6:
        text_ += u"ReDim Preserve " + Pick(names) + u"(" + Expression(2) + u")\r\n";
        return;
      case 7:
        text_ += u"Erase " + Pick(names) + u"\r\n";
        return;
      case 8:
        text_ += u"Set " + Pick(names) + u" = " + Expression(1) + u"\r\n";
        return;
      case 9:
        text_ += u"S " + Expression(1) + u", " + Pick(names) + u"(1)\r\n";
        return;
      case 10:
        text_ += u"Execute \"" + Pick(names) + u" = " + Pick(names) + u" & 1\"\r\n";
        return;
      case 11:
        text_ += u"Err.Raise " + Expression(2) + u"\r\n";
        return;
      case 12:
        text_ += u"On Error " + std::u16string(Next() % 2 == 0 ? u"Resume Next" : u"GoTo 0") + u"\r\n";
        return;
      case 13:
        text_ += Pick(names) + u"(" + Expression(2) + u") = " + Expression(1) + u"\r\n";
        return;
      case 14:
        text_ += u"dict(" + Expression(2) + u") = " + Expression(1) + u"\r\n";
        return;
      case 18:
        text_ += u"Set o.Count = " + Pick(names) + u" : Set " + Pick(names) + u"(1) = o\r\n";
        return;
      case 19:
        text_ += u"ExecuteGlobal \"Function F(p) : F = \" & " + Expression(2) + u" & \" : End Function\"\r\n";
        return;
      case 15:
        text_ += u"ReDim " + Pick(names) + u"(2, " + Expression(2) + u")\r\n";
        return;
      default:
        text_ += Pick(names) + u" = " + Expression(0) + u"\r\n";
    }
  }

  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
  std::u16string text_;
};

}  // namespace
}  // namespace quarlin::vbs

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quarlin::vbs;
  heap::SetLimit(std::size_t{32} << 20);
  QuietServices services;
  Engine engine(services, {.callDepth = 500, .steps = 3'000, .births = 1, .stepsPerLook = 500});
  try {
    engine.AddCode(Writer(data, size).Program());
    engine.Run(u"F", std::array<Value, 1>{Value::Integer(1)});
  } catch (const ScriptError&) {
  }
  return 0;
}
