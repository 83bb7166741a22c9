// SPDX-License-Identifier: GPL-3.0-or-later
// How a debugger follows a script: where it is told to stop, and what it sees there.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "script/values/array.h"
#include "script/values/conversions.h"
#include "script/vbscript/machine/engine.h"
#include "support/quiet_services.h"

namespace quarlin::vbs {
namespace {

// Notes the line of every stop, the errors as "line!", those that are caught as "line?".
class NotingHook : public DebugHook {
 public:
  void AtStatement(Standing& standing) override {
    const int line = standing.CallAt(0).at.line;
    noted += (noted.empty() ? "" : " ") + std::to_string(line);
    if (atStatement) atStatement(standing, line);
  }
  void AtError(Standing& standing, const ScriptError&, bool caught) override {
    noted += " " + std::to_string(standing.CallAt(0).at.line) + (caught ? "?" : "!");
  }
  std::string noted;
  std::function<void(Standing& standing, int line)> atStatement;
};

class VbscriptDebug : public testing::Test {
 protected:
  void Run(std::string_view script, StopsAt stops) {
    engine->SetDebugHook(&hook);
    engine->StopAt(std::move(stops));
    try {
      engine->AddCode(Utf16Of(script));
    } catch (const ScriptError& error) {
      hook.noted += " error " + std::to_string(error.number);
    }
  }

  QuietServices services;
  NotingHook hook;
  std::optional<Engine> engine{std::in_place, services};
};

struct StepCase {
  const char* script;
  const char* stops;  // with a stop at every statement
};

TEST_F(VbscriptDebug, EveryStatementIsAStopOnceInTheOrderInWhichTheyRun) {
  const std::vector<StepCase> cases{
      {"a = 1\n\n' remark\nb = a\nDim c\nConst d = 1\nc = 2", "1 4 7"},
      {"a = 1: b = 2\nc = 3", "1 1 2"},
      {"For i = 1 To 2\n  a = i\nNext\nb = 1", "1 2 3 2 3 4"},
      {"For i = 1 To 0\n  a = i\nNext\nb = 1", "1 4"},
      {"For Each x In Array(1, 2)\n  a = x\nNext\nb = 1", "1 2 3 2 3 4"},
      {"While i < 2\n  i = i + 1\nWend\nb = 1", "1 2 3 1 2 3 1 4"},
      {"Do\n  i = i + 1\nLoop Until i = 2\nb = 1", "2 3 2 3 4"},
      {"Do Until i = 1\n  i = i + 1\nLoop", "1 2 3 1"},
      {"If a Then\n  b = 1\nElseIf Not a Then\n  b = 2\nElse\n  b = 3\nEnd If\nc = 1", "1 3 4 8"},
      {"If a Then b = 1 Else b = 2\nc = 1", "1 1 2"},
      {"Select Case a\n  Case 1\n    b = 1\n  Case 0, 2\n    b = 2\nEnd Select\nc = 1", "1 5 7"},
      {"Set c = New RegExp\nWith c\n  .Global = True\nEnd With\nb = 1", "1 2 3 4 5"},
      {"Sub Add(n)\n  t = t + n\nEnd Sub\nDim t\nAdd 1\nAdd 2", "5 2 3 6 2 3"},
      {"Function F\n  Dim a(2)\n  F = 1\nEnd Function\nx = F() + F()", "5 3 4 3 4"},
      {"Class C\n  Private Sub Class_Initialize\n    n = 1\n  End Sub\n  Public n\nEnd Class\nSet o = New "
       "C\nx = 1",
       "7 3 4 8"},
      {"Sub S\n  If True Then Exit Sub\n  a = 1\nEnd Sub\nS\nb = 1", "5 2 2 6"},
      {"Execute \"a = 1\" & vbLf & \"b = 2\"\nc = 1", "1 2"},
      {"On Error Resume Next\na = 1 \\ 0\nb = 1", "1 2 2? 3"},
      {"Sub S\n  a = 1 \\ 0\nEnd Sub\nOn Error Resume Next\nS\nb = 1", "4 5 2 2? 6"},
      {"a = Array(1)\nb = a(2)", "1 2 2! error 9"},
      {"Function F\n  F = 1 \\ 0\nEnd Function\nx = Eval(\"F()\")\ny = 1", "4 2 2! error 11"},
  };
  for (const StepCase& each : cases) {
    SCOPED_TRACE(each.script);
    hook.noted.clear();
    engine.emplace(services);
    Run(each.script, {true, {}});
    EXPECT_EQ(hook.noted, each.stops);
  }
}

TEST_F(VbscriptDebug, StopsThatAreSetOrTakenAwayWhileItRunsCountAtOnce) {
  const char* script =
      "Sub Work\n  n = n + 1\n  n = n + 1\nEnd Sub\nDim n, i\nFor i = 1 To 3\n  Work\nNext\nn = 0";
  int visits = 0;
  hook.atStatement = [&](Standing&, int line) {
    if (line == 7) engine->StopAt({false, {3}});  // in a procedure that is not compiled yet
    if (line == 3 && ++visits == 2)
      engine->StopAt({false, {8, 9}});  // in code that is in the middle of a loop
  };
  Run(script, {false, {7}});
  EXPECT_EQ(hook.noted, "7 3 3 8 8 9");
}

TEST_F(VbscriptDebug, AHookThatGoesAwayInItsOwnCallLeavesTheScriptAsItWas) {
  hook.atStatement = [this](Standing&, int) { engine->SetDebugHook(nullptr); };
  Run("Dim n\nFor i = 1 To 3\n  n = n + i\nNext\nFunction Sum: Sum = n: End Function", {true, {}});
  EXPECT_EQ(hook.noted, "2");
  EXPECT_EQ(ToText(engine->Run(u"Sum")), u"6");
}

std::string Told(const std::vector<NamedValue>& values) {
  std::string told;
  for (const NamedValue& named : values) {
    const bool shown = !named.value.IsObject() && !named.value.IsArray();
    told += Utf8Of(named.name) + "=" + (shown ? Utf8Of(ToText(named.value)) : "...") + " ";
  }
  return told;
}

std::string Evaluated(Standing& standing, std::size_t call, std::u16string_view text) {
  try {
    return Utf8Of(ToText(standing.Evaluate(call, text)));
  } catch (const ScriptError& error) {
    return "error " + std::to_string(error.number) + ": " + Utf8Of(error.FullDescription());
  }
}

constexpr const char* nestedCalls = R"(Option Explicit
Dim total, list
Class Meter
  Private offset
  Public Function Read(ByVal raw, scale)
    Dim unitName
    unitName = "mV"
    offset = 3
    Read = Scaled(raw + offset, scale)
  End Function
End Class
Function Scaled(value, factor)
  Dim result
  Execute "Dim made: made = 7"
  result = value * factor
  Scaled = result
End Function
Function Forever: Do: Loop: End Function
Function Quietly: On Error Resume Next: Quietly = 1 \ 0: Err.Clear: Quietly = "quiet": End Function
Dim m: Set m = New Meter
list = Array(5, 6)
total = m.Read(4, 2)
)";

TEST_F(VbscriptDebug, AStandShowsEveryCallWithItsOwnVariablesAndEvaluatesInIt) {
  std::vector<std::string> seen;
  hook.atStatement = [&](Standing& standing, int) {
    for (std::size_t i = 0; i < standing.Depth(); ++i) {
      const CallView call = standing.CallAt(i);
      seen.push_back(Utf8Of(call.procedure) + ":" + std::to_string(call.at.line));
    }
    for (std::size_t call = 0; call < 3; ++call) seen.push_back(Told(standing.Locals(call)));
    seen.push_back(Told(standing.Globals()));
    for (const char16_t* text :
         {u"value & factor & made", u"Quietly() & Err.Number", u"Forever()", u"nobody", u"1 +", u"list(1)"}) {
      seen.push_back(Evaluated(standing, 0, text));
    }
    seen.push_back(Evaluated(standing, 1, u"Me.Read(0, raw) & unitName & offset"));
  };
  Run(nestedCalls, {false, {16}});
  const std::vector<std::string> expected{"Scaled:16",
                                          "Read:9",
                                          ":22",
                                          "value=7 factor=2 Scaled= result=14 made=7 ",
                                          "Me=... raw=4 scale=2 Read= unitName=mV ",
                                          "",
                                          "total= list=... m=... ",
                                          "727",
                                          "quiet0",
                                          "error 507: The expression takes too long",
                                          "error 500: Variable is undefined: 'nobody'",
                                          "error 1002: Syntax error",
                                          "6",
                                          "12mV3"};
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(hook.noted, "16");  // what is evaluated stops at nothing
}

TEST_F(VbscriptDebug, TheLinesThatCanBeStoppedAtAreKnownBeforeTheScriptRuns) {
  EXPECT_EQ(Engine::StatementLines(Utf16Of(nestedCalls)),
            (std::set<int>{7, 8, 9, 10, 14, 15, 16, 17, 18, 19, 20, 21, 22}));
}

}  // namespace
}  // namespace quarlin::vbs
