// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <array>

#include "script/jscript/call_assignments.h"
#include "script/jscript/engine.h"
#include "script/jscript/source_names.h"
#include "script/values/array.h"
#include "script/values/conversions.h"
#include "support/quiet_services.h"

namespace quarlin::jscript {
namespace {

using vbs::Arguments;
using vbs::MemberKind;
using vbs::Value;

// The script engine belongs to the toolkit, which wants an application.
class Application : public testing::Environment {
 public:
  void SetUp() override {
    if (QCoreApplication::instance() == nullptr)
      application_ = std::make_unique<QCoreApplication>(count_, arguments_.data());
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  std::array<char, 5> name_{"test"};
  std::array<char*, 2> arguments_{name_.data(), nullptr};
  std::unique_ptr<QCoreApplication> application_;
};

const testing::Environment* const application = testing::AddGlobalTestEnvironment(new Application);

struct Box : vbs::TableObject<Box> {
  static std::span<const vbs::Member<Box>> Members() {
    static constexpr std::array<vbs::Member<Box>, 2> members{{
        {u"Text", MemberKind::Property, 0, 0, [](Box& self, Arguments) { return self.text; },
         [](Box& self, Arguments, const Value& value) { self.text = vbs::ToTextValue(value); }, true},
        {u"Length", MemberKind::Property, 0, 0,
         [](Box& self, Arguments) { return Value::Long(static_cast<int>(self.text.AsText().size())); }},
    }};
    return members;
  }
  Box() { ++alive; }
  ~Box() override { --alive; }
  std::u16string_view TypeName() const override { return u"Box"; }

  Value text = Value::String(u"");
  static inline int alive = 0;
};

struct Boxes : vbs::TableObject<Boxes> {
  static std::span<const vbs::Member<Boxes>> Members() {
    static constexpr std::array<vbs::Member<Boxes>, 2> members{{
        {u"Item", MemberKind::Indexed, 1, 1,
         [](Boxes& self, Arguments arguments) { return self.At(arguments); }, nullptr, true},
        {u"Count", MemberKind::Property, 0, 0, [](Boxes&, Arguments) { return Value::Long(2); }},
    }};
    return members;
  }
  std::u16string_view TypeName() const override { return u"Boxes"; }

  Value At(Arguments arguments) const {
    const auto index = static_cast<std::size_t>(vbs::ToLong(arguments[0]));
    if (index >= boxes.size()) throw vbs::ScriptError(vbs::subscriptOutOfRange);
    return Value::Object(boxes[index]);
  }
  std::unique_ptr<vbs::Enumerator> Enumerate() override {
    struct Steps : vbs::Enumerator {
      explicit Steps(Boxes& owner) : boxes(&owner) {}
      std::optional<Value> Next() override {
        return at < boxes->boxes.size() ? std::optional(Value::Object(boxes->boxes[at++])) : std::nullopt;
      }
      vbs::Ref<Boxes> boxes;
      std::size_t at = 0;
    };
    return std::make_unique<Steps>(*this);
  }

  std::array<vbs::ObjectRef, 2> boxes{new Box, new Box};
};

Value Matrix() {
  const vbs::ArrayRef array = vbs::ArrayBody::Make(std::array{1, 2});
  for (int index = 0; index < 6; ++index)
    array->Items()[static_cast<std::size_t>(index)] = Value::Long(index);
  return Value::Array(array);
}

// Tells the kinds and texts of its arguments.
Value Describe(Arguments arguments) {
  std::u16string text;
  for (const Value& argument : arguments) {
    text += vbs::TypeNameOf(argument);
    const bool isPlain = argument.Is(vbs::Kind::Array) || argument.IsNull() || argument.IsNothing();
    text += isPlain ? u";" : u" " + vbs::ToText(argument) + u";";
  }
  return Value::String(text);
}

struct Panel : vbs::TableObject<Panel> {
  static std::span<const vbs::Member<Panel>> Members() {
    static const std::array<vbs::Member<Panel>, 9> members{{
        {u"Value", MemberKind::Property, 0, 0, [](Panel& self, Arguments) { return self.value; },
         [](Panel& self, Arguments, const Value& given) { self.value = given; }},
        {u"txtOutput", MemberKind::Property, 0, 0,
         [](Panel& self, Arguments) { return Value::Object(self.output); }},
        {u"TextIO", MemberKind::Indexed, 0, 1,
         [](Panel& self, Arguments arguments) {
           return arguments.empty() ? Value::Object(self.boxes.Get()) : self.boxes->At(arguments);
         }},
        {u"Describe", MemberKind::Method, 0, 9,
         [](Panel&, Arguments arguments) { return Describe(arguments); }},
        {u"Fail", MemberKind::Method, 1, 1,
         [](Panel&, Arguments arguments) -> Value { throw vbs::ScriptError(vbs::ToLong(arguments[0])); }},
        {u"SendString", MemberKind::Method, 0, 1,
         [](Panel&, Arguments) { return Value::String(u"the host's"); }},
        {u"Matrix", MemberKind::Method, 0, 0, [](Panel&, Arguments) { return Matrix(); }},
        {u"Day", MemberKind::Property, 0, 0, [](Panel&, Arguments) { return Value::Date(-1.25); }},
        {u"NewBox", MemberKind::Method, 0, 0, [](Panel&, Arguments) { return Value::Object(new Box); }},
    }};
    return members;
  }
  std::u16string_view TypeName() const override { return u"Panel"; }

  Value value;
  vbs::ObjectRef output{new Box};
  vbs::Ref<Boxes> boxes{new Boxes};
};

class TestServices : public vbs::QuietServices {
 public:
  TestServices() { patrol_.Enter(); }  // for as long as the test runs
  vbs::Patrol* Outside() override { return &patrol_; }
  bool MayGoOn() override {
    if (std::exchange(stopWhenAsked, false)) mustStop = true;
    return ++asked < stopAt;
  }
  bool MustStop() const override { return mustStop.exchange(false); }

  bool stopWhenAsked = false;
  mutable std::atomic<bool> mustStop = false;
  int asked = 0;
  int stopAt = 1 << 30;

 private:
  vbs::Patrol patrol_;
};

class JscriptTest : public testing::Test {
 protected:
  JscriptTest() { Use({}); }

  void Use(Limits limits) {
    engine = std::make_unique<Engine>(services, limits);
    engine->AddObject(u"FrmCommand", panel.Get());
  }

  // The error as "number source description line:column text"; empty when there was none.
  template <class Work>
  std::string ErrorOf(Work work) {
    try {
      work();
    } catch (const vbs::ScriptError& error) {
      isFinal = error.isFinal;
      return std::to_string(error.number) + " " + vbs::Utf8Of(error.FullDescription()) + " " +
             std::to_string(error.position.line) + ":" + std::to_string(error.position.column) + " " +
             vbs::Utf8Of(error.line);
    }
    return {};
  }
  std::string ErrorIn(std::u16string_view source) {
    return ErrorOf([&] { engine->AddCode(source); });
  }

  // What is in the panel's Value after the script, or its error.
  std::string Result(std::u16string_view source) {
    panel->value = Value();
    const std::string error = ErrorIn(source);
    return error.empty() ? vbs::Utf8Of(vbs::ToText(panel->value)) : error;
  }

  vbs::Ref<Panel> panel{new Panel};
  TestServices services;
  std::unique_ptr<Engine> engine;
  bool isFinal = false;
};

struct Row {
  std::u16string_view source;
  std::string_view expected;
};

TEST_F(JscriptTest, MembersAreReachedWithoutRegardToCase) {
  const Row rows[] = {
      {u"FrmCommand.TextIO(1).Text = '5'; Value = frmcommand.TEXTIO(1).text + TextIO(1).Length", "51"},
      {u"FrmCommand.txtOutput = 'x'; VALUE = txtoutput + 'y' + txtOutput.lengTH", "xy1"},
      {u"value = 3; Value += 4; FrmCommand.vaLue++", "8"},
      {u"txtOutput = 7; Value = txtOutput == 7 && txtOutput * 2 == 14", "True"},
      {u"TextIO(0).Text = 'a'; txtOutput = TextIO(0); Value = txtOutput + ''", "a"},
      {u"Value = TextIO.Count + TextIO.Item(0).Text", "2a"},
      {u"var all = FrmCommand.TextIO; Value = all(0).Text + typeof txtOutput", "aobject"},
      {u"Value = (TextIO(0) === textio(0)) + ' ' + (TextIO(0) === TextIO(1))", "true false"},
      {u"Value = FrmCommand + ' ' + FrmCommand.NoSuch", "[Panel] undefined"},
      {u"eval('VaLuE = \"from eval\"')", "from eval"},
      {u"var s = ''; for (var e = new Enumerator(TextIO); !e.atEnd(); e.moveNext()) s += e.item().Text + ';';"
       u"e.moveFirst(); Value = s + e.item()",
       "a;5;a"},
      {u"for (var t = '', e = new Enumerator([1, 2]); !e.atEnd(); e.moveNext()) t += e.item(); Value = t",
       "12"},
      {u"Value = String(5) + Date.UTC(1970, 0, 1)", "50"},
      {u"var proto = Object.getPrototypeOf(FrmCommand), read = Object.getOwnPropertyDescriptor(proto, "
       u"'txtOutput').get;"
       u"for (var i = 0, all = ''; i < 3; ++i) try { read.call([{}, {$id: 1e300}, {$id: -1}][i]) } "
       u"catch (e) { all += (e.number & 0xFFFF) + ' ' } Value = all + proto.$other",
       "424 424 424 undefined"},
  };
  for (const Row& row : rows) EXPECT_EQ(Result(row.source), row.expected) << vbs::Utf8Of(row.source);
}

TEST_F(JscriptTest, CallsAreAssignedTo) {
  const Row rows[] = {
      {u"d.Item('k') = 1; Value = d.Item('k')", "1"},
      {u"d('k') = 2; d.item('k') += 3; d.Item('k')++; ++d.Item('k'); --d('k'); Value = d.Item('k')", "6"},
      {u"function c(x) { return {d: d, n: x} } var a = {b: c}; a.b(c(1).n).d.Item('z') = d('y') = 4;"
       u"Value = d('z') + d.Item('y')",
       "8"},
      {u"TextIO(0) = 'a'; FrmCommand.TextIO(1) = TextIO(0); Value = TextIO(1).Text", "a"},
      {u"d('o') = TextIO(0); Value = d('o') === TextIO(0)", "True"},
      {u"d.Key('o') = 'p'; Value = d.Exists('p')", "True"},
      {u"new ActiveXObject('Scripting.Dictionary')('k') = 1; var n = 1; if (d('z')) ++n; Value = n", "2"},
  };
  engine->AddCode(u"var d = new ActiveXObject('Scripting.Dictionary');");
  for (const Row& row : rows) EXPECT_EQ(Result(row.source), row.expected) << vbs::Utf8Of(row.source);
}

TEST_F(JscriptTest, ValuesKeepTheirKindOnTheWay) {
  const Row rows[] = {
      {u"Describe(1, -2147483648, 2147483648, 1.5, 'x', true, null, undefined)",
       "Long 1;Long -2147483648;Double 2147483648;Double 1.5;String x;Boolean True;Null;Empty ;"},
      {u"Describe() + Describe([1, 'a'], []) + Describe(1, 2, 3)",
       "Variant();Variant();Long 1;Long 2;Long 3;"},
      {u"Describe(new Date(2024, 1, 29, 13, 5, 6))", "Date 2/29/2024 1:05:06 PM;"},
      {u"Describe(Day) + Day.getHours() + Day.getVarDate().getDate()", "Date 12/29/1899 6:00:00 AM;629"},
      {u"Describe(FrmCommand.txtOutput)", "Box ;"},
      {u"var m = new VBArray(Matrix()); [m.toArray(), m.dimensions(), m.ubound(2), m.lbound(), "
       u"m.getItem(1, 2)].join()",
       "0,1,2,3,4,5,2,2,0,5"},
      {u"var d = new ActiveXObject('scripting.dictionary'), kept = {k: 1}; d.Add('a', kept); d.add('b', 2);"
       u"[d('a') === kept, d.Item('b'), d.Count, d.Keys().length, new VBArray(d.keys()).toArray()].join()",
       "true,2,2,2,a,b"},
      {u"var xl = new ActiveXObject('Excel.Application'), sheet = xl.Workbooks.Add().Worksheets(1);"
       u"xl.Cells(1, 2).Value = 3; sheet.Range('A2:B3').Value = [[1, 'x'], [2]]; sheet.Rows(1).Font.Bold = "
       u"true;"
       u"[sheet.Range('B1').Value, sheet.Cells(2, 2).Value, sheet.Cells(3, 2).Value, "
       u"sheet.UsedRange.Address(),"
       u" sheet.Cells(1, 2).Font.Bold, sheet.Rows.Count].join()",
       "3,x,,$A$1:$B$3,true,1048576"},
      {u"ScriptEngine() + typeof WScript + typeof GetObject + typeof console",
       "JScriptundefinedundefinedundefined"},
  };
  for (const Row& row : rows) {
    const std::size_t split = row.source.rfind(u';') + 1;  // statements, then the expression
    const std::u16string source =
        std::u16string(row.source.substr(0, split)) + u" Value = " + std::u16string(row.source.substr(split));
    EXPECT_EQ(Result(source), row.expected) << vbs::Utf8Of(row.source);
  }
}

TEST_F(JscriptTest, WhatTheScriptDeclaresHidesTheHost) {
  EXPECT_EQ(Result(u"Value = SendString()"), "the host's");
  EXPECT_FALSE(engine->HasProcedure(u"SendString"));
  engine->AddCode(u"function SendString() { Value = 'own ' + sendstring() }\nvar Describe = 'mine';");
  engine->Run(u"sendSTRING");
  EXPECT_EQ(vbs::ToText(panel->value), u"own the host's");
  EXPECT_EQ(Result(u"Value = Describe"), "mine");
  EXPECT_NE(ErrorIn(u"var Fail; }"), "");
  EXPECT_EQ(Result(u"Value = typeof Fail"), "function") << "a text that was refused declares nothing";
}

TEST_F(JscriptTest, ProceduresAreFunctionsOfTheTopLevel) {
  engine->AddCode(
      u"function Task() { Value = 'Task' }\nfunction TASK() { Value = 'TASK' }\n"
      u"var other = function () { Value = 'other' };\nfunction outer() { function inner() {} }");
  const std::pair<std::u16string_view, std::string_view> calls[] = {
      {u"Task", "Task"}, {u"TASK", "TASK"}, {u"OTHER", "other"}};
  for (const auto& [name, result] : calls) {
    EXPECT_TRUE(engine->HasProcedure(name));
    engine->Run(name);
    EXPECT_EQ(vbs::Utf8Of(vbs::ToText(panel->value)), result);
  }
  for (const std::u16string_view name : {u"inner", u"eval", u"Enumerator", u"Describe", u"NoSuch"}) {
    EXPECT_FALSE(engine->HasProcedure(name));
    EXPECT_EQ(ErrorOf([&] { engine->Run(name); }).substr(0, 3), "13 ");
  }
}

TEST_F(JscriptTest, ErrorsHaveNumberAndPlace) {
  const Row rows[] = {
      {u"var a = 1;\n  nosuch + 1;", "5009 'nosuch' is undefined 2:0   nosuch + 1;"},
      {u"\nfunction f() {\n  Fail(11) }\nf()", "11 Division by zero 3:0   Fail(11) }"},
      {u"TextIO(7)", "9 Subscript out of range 1:0 TextIO(7)"},
      {u"FrmCommand.NoSuch = 1",
       "438 Object doesn't support this property or method: 'NoSuch' 1:0 FrmCommand.NoSuch = 1"},
      {u"Describe(1,2,3,4,5,6,7,8,9,10)",
       "450 Wrong number of arguments or invalid property assignment 1:0 Describe(1,2,3,4,5,6,7,8,9,10)"},
      {u"var u;\nu.length", "5007 Cannot read property 'length' of undefined 2:0 u.length"},
      {u"throw new Error(6, 'mine')", "6 mine 1:0 throw new Error(6, 'mine')"},
      {u"throw new Error('mine')", "5022 mine 1:0 throw new Error('mine')"},
      {u"\nthrow 'text'", "5022 Exception thrown and not caught: 'text' 2:0 throw 'text'"},
      {u"new RegExp('(')", "5017 Syntax error in regular expression 1:0 new RegExp('(')"},
      {u"'x'.match(new Array(99999).join('('))",
       "28 Out of stack space 1:0 'x'.match(new Array(99999).join('('))"},
      {u"function deep() { return deep() + 1 }; deep()",
       "28 Out of stack space 1:0 function deep() { return deep() + 1 }; deep()"},
      {u"txtOutput.Append(1)",
       "438 Object doesn't support this property or method: 'Append' 1:0 txtOutput.Append(1)"},
      {u"[TextIO][0].toString().x.y",
       "5007 Cannot read property 'y' of undefined 1:0 [TextIO][0].toString().x.y"},
      {u"new ActiveXObject('no.such')",
       "429 ActiveX component can't create object: 'no.such' 1:0 new ActiveXObject('no.such')"},
      {u"new Enumerator(5)", "451 Object not a collection 1:0 new Enumerator(5)"},
      {u"var a;\n  if (a { }", "1006 Expected ')' 2:8   if (a { }"},
      {u"FrmCommand.TextIO(3) = 1", "9 Subscript out of range 1:0 FrmCommand.TextIO(3) = 1"},
      {u"TextIO(0) = TextIO(1) = 'x'; if (a { }",
       "1006 Expected ')' 1:35 TextIO(0) = TextIO(1) = 'x'; if (a { }"},
      {u"function f() {}\nf(1) = 2", "5008 Illegal assignment 2:0 f(1) = 2"},
      {u"FrmCommand.NoSuch(1) = 2",
       "438 Object doesn't support this property or method 1:0 FrmCommand.NoSuch(1) = 2"},
  };
  for (const Row& row : rows) EXPECT_EQ(ErrorIn(row.source), row.expected) << vbs::Utf8Of(row.source);
  const Row caught[] = {
      {u"try { Fail(11) } catch (e) { Value = [e.number, e.description, e.message] .join() }",
       "-2146828277,Division by zero,Division by zero"},
      {u"try { nosuch } catch (e) { Value = (e.number & 0xFFFF) + (e instanceof Error ? 'E' : '') }",
       "5009E"},
  };
  for (const Row& row : caught) EXPECT_EQ(Result(row.source), row.expected);

  engine->AddCode(u"\n\nfunction Task() {\n  Fail(5) }");
  EXPECT_EQ(ErrorOf([&] { engine->Run(u"Task"); }), "5 Invalid procedure call or argument 4:0   Fail(5) }");
}

TEST_F(JscriptTest, CheckingRunsNothing) {
  EXPECT_EQ(ErrorOf([&] { engine->Check(u"Value = 1; FrmCommand.Fail(5);"); }), "");
  EXPECT_TRUE(panel->value.IsEmpty());
  EXPECT_EQ(ErrorOf([&] { engine->Check(u"var a;\nif (a { }"); }), "1006 Expected ')' 2:6 if (a { }");
}

TEST_F(JscriptTest, WhatDoesNotEndIsStopped) {
  const auto stops = [&](Limits limits, std::u16string_view source, std::string_view error) {
    Use(limits);
    isFinal = false;
    EXPECT_EQ(ErrorIn(source).substr(0, error.size()), error) << vbs::Utf8Of(source);
    EXPECT_TRUE(isFinal);
  };
  for (const std::u16string_view source : {u"while (true) try { for (;;); } catch (e) {}",
                                           u"function f(n) { return n < 2 ? 1 : f(n - 1) + f(n - 2) }; f(60)",
                                           u"[2, 1].sort(function () { for (;;); })"}) {
    stops({.silence = std::chrono::milliseconds(60)}, source,
          "507 The script was stopped in its top-level code: it did not respond, and cannot go on 0:0 ");
  }
  for (const std::u16string_view source : {u"a = []; for (;;) { a.push('x' + a.length + TextIO(0).Text) }",
                                           u"a = []; s = 'x'; for (;;) { s += s; a.push(s.charAt(1)) }"}) {
    stops({.memory = std::size_t{100} << 20}, source, "7 Out of memory in its top-level code");
  }
  Use({});
  services.stopAt = services.asked + 10;
  engine->AddCode(
      u"function Task() {\nfor (;;) try {\ntell() } catch (e) {} }\nfunction tell() { Value = 1 }");
  EXPECT_EQ(ErrorOf([&] { engine->Run(u"Task"); }),
            "507 The script was stopped in function Task, last seen at line 4, called from line 3 4:0 "
            "function tell() { Value = 1 }");
  EXPECT_EQ(services.asked, services.stopAt);
}

// The order comes once the script was seen, and may come anywhere in what it does from then on.
TEST_F(JscriptTest, TheEngineBearsAnOrderToStopAnywhere) {
  engine->AddCode(
      u"var d = new ActiveXObject('Scripting.Dictionary'), o = {get get() { return d.Count }};"
      u"function last() { Value = d.Exists('zz') + typeof d.Add }");
  for (const std::u16string_view work : {u"d('k') = 1", u"try { d.NoSuch() } catch (e) {}",
                                         u"TextIO.Item(0).Text", u"Value = txtOutput + ''", u"o.get"}) {
    for (int i = 0; i < 4; ++i) {
      services.stopWhenAsked = true;
      const std::string error = ErrorIn(u"for (;;) { Value = 1; " + std::u16string(work) + u" }");
      EXPECT_EQ(error.substr(0, 70),
                "507 The script was stopped in its top-level code, last seen at line 1 ");
      engine->Run(u"last");
      EXPECT_EQ(vbs::ToText(panel->value), u"falsefunction") << vbs::Utf8Of(work);
    }
  }
}

// The last word of a script may be among them.
TEST_F(JscriptTest, ProceduresAreThereWhereTheTopLevelWasStopped) {
  services.stopAt = services.asked + 1;
  EXPECT_EQ(ErrorIn(u"Value = 1; function EndTask() { Value = 'end' }").substr(0, 4), "507 ");
  services.stopAt = 1 << 30;
  engine->Run(u"EndTask");
  EXPECT_EQ(vbs::ToText(panel->value), u"end");
}

TEST_F(JscriptTest, WalksOverLongListsAreStopped) {
  Use({.silence = std::chrono::milliseconds(40)});
  for (const std::u16string_view walk :
       {u"includes(1)", u"forEach(f)", u"map(f)", u"filter(f)", u"every(f)", u"some(f)", u"reduce(f, 1)",
        u"reduceRight(f, 1)", u"toLocaleString()", u"join()", u"indexOf(1)"}) {
    const std::string error = ErrorIn(u"function f() {}\na = []; a.length = 4e8; a." + std::u16string(walk));
    EXPECT_EQ(error.substr(0, 26), "507 The script was stopped") << vbs::Utf8Of(walk) << error;
  }
}

// What is written in the language for long lists and texts does what the engine's own does for short ones.
TEST_F(JscriptTest, LongListsAreWalkedLikeShortOnes) {
  Use({.silence = std::chrono::minutes(5)});  // on a machine that does something else, too
  engine->AddCode(
      u"function lists(n) { var a = [], seen = 0, sum = 0, walked = 0, big = function (x) { return x > 9 };"
      u"for (var i = 0; i < n; ++i) if (i % 3) { a[i] = i * 7 % 11; ++seen; sum += a[i] }\n"
      u"sum -= a[4]; a[4] = undefined; a.length = n + 1;"
      u"a.forEach(function (x, i, all) { walked += all === a && a[i] === x ? this.one : 0 }, {one: 1});"
      u"var add = function (s, x) { return s + (x || 0) }, mapped = a.map(big), digits = a.slice().sort(),"
      u"down = a.slice().sort(function (x, y) { return y - x });"
      u"return [walked - seen, mapped.length - n, 0 in mapped, mapped[1], a.filter(big).join().substr(0, 5),"
      u"a.every(big), a.some(big), a.reduce(add) - sum, a.reduceRight(add, 5) - sum, a.includes(undefined),"
      u"a.includes(11), digits[0], digits[seen - 2], digits[seen - 1], seen in digits, digits.length - n,"
      u"down[0], down[seen - 2], a.toLocaleString().substr(0, 6)].join() }\n"
      u"function texts(n) { var t = new Array(n + 1).join('ab,');"
      u"return [t.split(',').length - n, t.split('').length - 3 * n, t.split(/(b),/)[1], "
      u"t.split(/b(),/).length - 2 * n,"
      u"t.split(',', 2), t.match(/b,|^/g).length - n, t.split().length, t.match(/z/g), "
      u"t.match(/b/).index].join() }\n"
      u"function parsed(n) { var t = '[0', half = function (k, v) { return k === '1' ? undefined : v };"
      u"for (var i = 0; i < n; ++i) t += ', {\"a\\\\\\\\\": [1e2,-2.5, true ,null,\\n[],{}]}';"
      u"var ends = [']', '', ']]', ',]', ',0x]', ',\"a]', ',{\"a\",1}]', ',{a:1}]', ',[1 2]]', ',\\u00a01]', "
      u"', ]'];"
      u"var all = ends.map(function (end) { try { return JSON.parse(t + end).length - n } catch (e) { return "
      u"e.name } });"
      u"var list = JSON.parse(t + ']\\t'), less = JSON.parse(t + ']', half);"
      u"return all + JSON.stringify(list[n]) + JSON.stringify(less[2]) + (1 in less) + Object.keys(list[1]) "
      u"}");
  EXPECT_EQ(Result(u"Value = lists(101000)"), Result(u"Value = lists(60)"));
  EXPECT_EQ(Result(u"Value = texts(36000)"), Result(u"Value = texts(20)"));
  EXPECT_EQ(Result(u"Value = parsed(9000)"), Result(u"Value = parsed(20)"));
  EXPECT_EQ(Result(u"Value = [].forEach.length + [].forEach.name + [].sort.length + ''.split.length"),
            "1forEach12");
  EXPECT_EQ(Result(u"Value = Array.prototype.map.call(new Array(101001).join('a'), String).length"),
            "101000");
  EXPECT_EQ(
      Result(
          u"var p = {}, q = {prev: p, other: p}; p.next = p.other = q;\n"
          u"try { JSON.stringify(p) } catch (e) { Value = e.name } q = {c: [7]};\n"
          u"for (var i = 0; i < 60; ++i) q = {a: q, b: q};\n"
          u"Value += JSON.stringify([q, {c: 1}], ['c']) + JSON.stringify({toJSON: function () { return 1 }, "
          u"a: new Array(3e7)})"),
      "TypeError[{},{\"c\":1}]1");
  EXPECT_EQ(
      Result(
          u"q = JSON.parse('{\"__proto__\": {\"z\": 1}, \"a\": \"' + new Array(400001).join(' ') + '\"}');\n"
          u"Value = Object.keys(q) + q.z"),
      "__proto__,aundefined");
  EXPECT_EQ(ErrorIn(u"new Array(101000).reduce(Number)").substr(0, 4), "438 ");
  EXPECT_EQ(ErrorIn(u"a = []; for (i = 0; i < 1e6; ++i) a.push(i);\nMath.max(...a)").substr(0, 24),
            "28 Out of stack space 2:");
  EXPECT_EQ(ErrorIn(u"t = JSON.stringify(a);\nMath.max(...t)").substr(0, 24), "28 Out of stack space 2:");
  EXPECT_EQ(Result(u"n = 0; for (var x of JSON.parse(t)) n += x; Value = n"), "499999500000");
}

TEST_F(JscriptTest, ObjectsAreLetGoByTheGarbageCollectorAndAtTheEnd) {
  const int before = Box::alive;
  engine->AddCode(
      u"for (var i = 0; i < 50; i++) { var box = NewBox(); box.Text = i } var held = {in: NewBox()};"
      u"box = null;");
  engine->AddCode(u"CollectGarbage()");
  EXPECT_EQ(Box::alive, before + 1);
  engine.reset();
  EXPECT_EQ(Box::alive, before);
}

TEST(CallAssignments, OnlyWhatIsAssignedToIsTouched) {
  const std::pair<std::u16string_view, std::u16string_view> rows[] = {
      {u"a.b (1) = c(2)", u"a.b .$entry(1).$value  = c(2)"},
      {u"f(1)(2)[3](4) >>>= 5", u"f(1)(2)[3].$entry(4).$value  >>>= 5"},
      {u"--a.b(1); c(--d(2).e)", u"--a.b.$entry(1).$value ; c(--d(2).e)"},
      {u"f(g(1) = 2) = `${h(3) = 4}`", u"f.$entry(g.$entry(1).$value  = 2).$value  = `${h(3) = 4}`"},
      {u"f(1) == 2; f(1) => 3; f(1)\n++g; if (f(1)) ++g", u""},
      {u"while (x) (y) = 1; for (a of (b)) (c) = 2; return (d) = 3", u""},
      {u"'f(1) = 2' + \"f(1) = 2\" + /f(1) = 2/ + 1 // f(1) = 2", u""},
      {u"if (x) /f(1) = 2/.test(y); {} /f(1) = 2/g; a = b() / c(1) / d", u""},
      {u"/* f(1) = 2\n f(1) = */ x = `f(1) = 2 ${`}`} f(1) = 2`", u""},
  };
  for (const auto& [source, rewritten] : rows)
    EXPECT_EQ(vbs::Utf8Of(WithInsertions(source, CallAssignments(source))),
              vbs::Utf8Of(rewritten.empty() ? source : rewritten));
}

TEST(SourceNames, DeclarationsOfTheTopLevelOnly) {
  const std::pair<std::u16string_view, Names> rows[] = {
      {u"var a = f(x, y), b\nc = 1, d = 2", {u"a", u"b"}},
      {u"for (var i = 0, n = 2; i < n; i++) { var t }", {u"i", u"n", u"t"}},
      {u"function f(p) { var q; function g() {} } let h; const k = 1; class C {}", {u"f", u"h", u"k", u"C"}},
      {u"x = function named() { var q }; y = () => { var r }; o = {function: 1}.var", {}},
      {u"/* var a */ '{ var b'; /[/}]{ var c/.test(s); s = 1 / 2; var e // var g", {u"e"}},
  };
  for (const auto& [source, names] : rows) EXPECT_EQ(DeclaredNames(source), names) << vbs::Utf8Of(source);
}

}  // namespace
}  // namespace quarlin::jscript
