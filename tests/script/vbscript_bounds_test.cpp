// SPDX-License-Identifier: GPL-3.0-or-later
// What keeps a script within bounds: it can be stopped in the middle of whatever takes long.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "script/values/conversions.h"
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
                u"Dim list : list = Split(String(200000, \",\"), \",\")"),
            0);
  for (const std::u16string_view statement :
       {u"x = String(300000, \"x\")", u"x = Space(300000)", u"x = UCase(big)", u"x = LCase(big)",
        u"x = StrReverse(big)", u"x = Escape(big)", u"x = Unescape(big)", u"x = StrComp(big, big, 1)",
        u"x = InStr(big, half)", u"x = InStr(1, big, half, 1)", u"x = InStr(big, \"b\")",
        u"x = InStrRev(big, \"b\" & half)", u"x = InStrRev(big, \"b\", -1, 1)", u"x = InStrB(big, half)",
        u"x = MidB(big, 2)", u"x = Replace(big, \"a\", \"\")", u"x = Split(big, \"a\")", u"x = Join(list)",
        u"x = Filter(list, \"a\")"}) {
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
    EXPECT_EQ(Run(u"n = 0 : StopMe\nDo : n = n + 1 : " + std::u16string(statement) + u" : Loop"), stopped);
    services_.stopped = false;
    EXPECT_EQ(Run(u"If n > 20 Then Err.Raise 1000, , n"), 0) << Utf8Of(statement);
  }
}

}  // namespace
}  // namespace quarlin::vbs
