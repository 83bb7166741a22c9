// SPDX-License-Identifier: GPL-3.0-or-later
// What keeps a script within bounds: it can be stopped in the middle of whatever takes long, and whatever it
// makes takes of a memory that has an end.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "script/values/conversions.h"
#include "script/values/heap.h"
#include "script/vbscript/machine/engine.h"
#include "support/quiet_services.h"

namespace quarlin::vbs {
namespace {

// Lets a script go on until it has called StopMe, and no further than the next question.
class StoppingServices : public QuietServices {
 public:
  bool MayGoOn() override { return !stopped; }
  bool stopped = false;
};

class Stopper : public TableObject<Stopper> {
 public:
  explicit Stopper(StoppingServices& services) : services_(services) {}
  std::u16string_view TypeName() const override { return u"Stopper"; }
  static const auto& Members() {
    static constexpr std::array<Member<Stopper>, 2> members{{
        {u"StopMe", MemberKind::Method, 0, 0,
         [](Stopper& self, Arguments) {
           self.services_.stopped = true;
           return Value();
         }},
        {u"Told", MemberKind::Property, 0, 0, [](Stopper&, Arguments) { return Value::Integer(1); }},
    }};
    return members;
  }

 private:
  StoppingServices& services_;
};

class BoundsTest : public testing::Test {
 protected:
  BoundsTest() { engine_.AddObject(u"Bench", ObjectRef(new Stopper(services_)), true); }

  // The number of the error that ends the code, 0 without one.
  int Run(std::u16string_view code) {
    services_.stopped = false;
    try {
      engine_.AddCode(code);
    } catch (const ScriptError& error) {
      return error.number;
    }
    return 0;
  }

  StoppingServices services_;
  Engine engine_{services_};
};

constexpr int stopped = 507;

TEST_F(BoundsTest, WhatTakesLongCanBeStoppedInTheMiddle) {
  ASSERT_EQ(Run(u"big = String(300000, \"a\") : half = String(150000, \"a\") & \"b\"\n"
                u"Dim list : list = Split(String(200000, \",\"), \",\")\n"
                u"ReDim rows(200000), others(200000) : Dim fixed(200000)"),
            0);
  for (const std::u16string_view statement : {u"x = String(300000, \"x\")",
                                              u"x = Space(300000)",
                                              u"x = UCase(big)",
                                              u"x = LCase(big)",
                                              u"x = StrReverse(big)",
                                              u"x = Escape(big)",
                                              u"x = Unescape(big)",
                                              u"x = StrComp(big, big, 1)",
                                              u"x = InStr(big, half)",
                                              u"x = InStr(1, big, half, 1)",
                                              u"x = InStr(big, \"b\")",
                                              u"x = InStrRev(big, \"b\" & half)",
                                              u"x = InStrRev(big, \"b\", -1, 1)",
                                              u"x = InStrB(big, half)",
                                              u"x = MidB(big, 2)",
                                              u"x = Replace(big, \"a\", \"\")",
                                              u"x = Split(big, \"a\")",
                                              u"x = Join(list)",
                                              u"x = Filter(list, \"a\")",
                                              u"Erase rows",
                                              u"ReDim others(1)",
                                              u"Erase fixed"}) {
    EXPECT_EQ(Run(u"StopMe : " + std::u16string(statement)), stopped) << Utf8Of(statement);
  }
}

// 5,000 cheap rounds are one look; of costly ones it takes a few.
TEST_F(BoundsTest, AFewCostlyRoundsAreLookedAtAsSoonAsManyCheapOnes) {
  ASSERT_EQ(Run(u"big = String(2000000, \"a\") : other = String(2000000, \"a\")\n"
                u"ReDim list(200000) : Set d = CreateObject(\"Scripting.Dictionary\")"),
            0);
  for (const std::u16string_view statement :
       {u"x = big & \"b\"", u"x = (big = other)", u"If big <> other Then x = 1", u"copy = list : copy(0) = n",
        u"x = IsNumeric(big)", u"x = d.Exists(big)", u"x = Told"}) {
    EXPECT_EQ(Run(u"n = 0 : StopMe\nDo : n = n + 1 : " + std::u16string(statement) + u"\nLoop"), stopped);
    services_.stopped = false;
    EXPECT_EQ(Run(u"If n > 20 Then Err.Raise 1000, , n"), 0) << Utf8Of(statement);
  }
}

// As deep as calls go, and again from every depth.
TEST_F(BoundsTest, CallsByWayOfObjectsAreLookedAt) {
  ASSERT_EQ(Run(u"Class C : Public Default Property Get P : On Error Resume Next : P = Me & Me & Me\n"
                u"End Property : End Class\nSet o = New C : Set r = GetRef(\"F\")\n"
                u"Function F(x) : On Error Resume Next : r(1) : r(1) : End Function"),
            0);
  for (const std::u16string_view statement : {u"F 1", u"r(1)", u"x = o & o", u"Execute \"x = r(1)\""}) {
    EXPECT_EQ(Run(u"StopMe : " + std::u16string(statement)), stopped) << Utf8Of(statement);
  }
}

TEST_F(BoundsTest, TheObjectsOfAScriptThatWasStoppedRunNothingAtTheirEnd) {
  ASSERT_EQ(Run(u"Class C : Private Sub Class_Terminate : ended = ended + 1 : End Sub : End Class\n"
                u"Dim ended, list(9)\nSub Fill : For i = 0 To 9 : Set list(i) = New C : Next : End Sub"),
            0);
  EXPECT_EQ(Run(u"Fill : list(0) = 0 : StopMe : Erase list"), 0);
  EXPECT_EQ(Run(u"If ended <> 1 Then Err.Raise 1000"), 0);
  EXPECT_EQ(Run(u"Fill : Erase list : If ended <> 11 Then Err.Raise 1000"), 0);
}

constexpr std::size_t mebibyte = std::size_t{1} << 20;

class LittleMemory {
 public:
  explicit LittleMemory(std::size_t bytes) { heap::SetLimit(heap::InUse() + bytes); }
  ~LittleMemory() { heap::SetLimit(1024 * mebibyte); }
};

constexpr std::u16string_view declarations =
    u"Class Node : Public Other, List(1) : Public Text : End Class\n"
    u"Sub S : End Sub\nDim all : Set all = CreateObject(\"Scripting.Dictionary\")\n"
    u"Set re = New RegExp : re.Global = True : re.Pattern = \"a(b)\"\n"
    u"Set fso = CreateObject(\"Scripting.FileSystemObject\")\n";

// With 60,000 rounds each of these takes many times the memory that there is.
TEST_F(BoundsTest, WhateverAScriptMakesIsCounted) {
  for (const std::u16string_view statement :
       {u"Set all(n) = New Node", u"Set all(n) = CreateObject(\"Scripting.Dictionary\")",
        u"Set all(n) = New RegExp", u"Set all(n) = GetRef(\"S\")", u"Set all(n) = re.Execute(\"abab\")",
        u"Set all(n) = re.Execute(\"abab\")(0).SubMatches", u"Set all(n) = fso.GetFolder(\"/\")",
        u"Execute \"v\" & n & \" = 1\"", u"ExecuteGlobal \"Sub S\" & n & \" : x = 1 : End Sub\"",
        u"ExecuteGlobal \"Class C\" & n & \" : Public A : End Class\""}) {
    const LittleMemory memory(4 * mebibyte);
    Engine engine(services_);
    try {
      engine.AddCode(std::u16string(declarations) + u"Sub Fill\nFor n = 1 To 60000\n" +
                     std::u16string(statement) + u"\nNext\nEnd Sub\nFill");
      ADD_FAILURE() << Utf8Of(statement);
    } catch (const ScriptError& error) {
      EXPECT_EQ(error.number, outOfMemory) << Utf8Of(statement);
    }
  }
}

// What nobody refers to any more goes, although its parts refer to each other, and code that was replaced.
TEST_F(BoundsTest, WhatNobodyCanReachTakesNoMemory) {
  for (const std::u16string_view round :
       {u"Set a = New Node : Set b = New Node : Set a.Other = b : Set b.Other = a",
        u"Set a = New Node : Set a.Other = a", u"Set a = New Node : a.Other = Array(1, Array(a, a))",
        u"Set a = New Node : Set a.List(1) = a",
        u"Set a = New Node : Set b = CreateObject(\"Scripting.Dictionary\") : Set a.Other = b : b.Add a, 1",
        u"Set b = CreateObject(\"Scripting.Dictionary\") : b.Add 1, b",
        u"Set a = New Node : Set a.Other = a : If n Mod 100 = 0 Then a.Text = String(100000, \"x\")",
        u"ExecuteGlobal \"Function F : F = \" & n & \" : End Function\" : If F() <> n Then Err.Raise 1000",
        uR"(ExecuteGlobal "Class K : Public Function F : F = " & n & " : End Function : End Class"
            If Eval("(New K).F") <> n Then Err.Raise 1000)",
        u"Execute \"v = v + 1\""}) {
    const LittleMemory memory(8 * mebibyte);
    Engine engine(services_);
    try {
      engine.AddCode(std::u16string(declarations) + u"For n = 1 To 60000\n" + std::u16string(round) +
                     u"\nNext");
    } catch (const ScriptError& error) {
      ADD_FAILURE() << Utf8Of(round) << ": " << Utf8Of(error.FullDescription());
    }
  }
}

}  // namespace
}  // namespace quarlin::vbs
