// SPDX-License-Identifier: GPL-3.0-or-later
// The debugger of scripts in the whole program: where a script stands, what is seen there, and that a test
// which waits for it loses nothing.
#include "script/script_debugger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "script/script_host.h"
#include "script/values/conversions.h"
#include "script/vbscript_engine.h"
#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using vbs::Utf16Of;
using vbs::Utf8Of;

// A run that waits 200 ms for each answer. The user's commands come one for each stand, ten seconds later.
class DebuggerRig : public RequestRig {
 protected:
  DebuggerRig() {
    engines = [](std::string_view, vbs::Services& services) {
      return std::make_unique<VbscriptEngine>(services);
    };
    frm.Script().List().OnModal = [this] {
      frm.Script().List().controls.lstScript.SetListIndex(0);
      frm.Script().List().controls.cmdSelect.Click();
    };
    Debugger().OnChange = [this] {
      if (Debugger().Stands()) Stood();
    };
  }

  ScriptDebugger& Debugger() { return frm.Script().Runner().Debugger(); }
  CheckBox& Box() { return controls().script.chkEnableScript; }
  std::filesystem::path File() { return folder / "test.vbs"; }
  void Load(std::string_view script) { ASSERT_FALSE(WriteWholeFile(File(), script)); }
  void Enable(std::string_view script) {
    Box().SetChecked(false);
    Load(script);
    Box().SetChecked(true);
  }

  // Runs the script's top level with these commands, one for each stand.
  void Debug(std::string_view script, std::string_view userCommands) {
    commands.str(std::string(userCommands));
    commands.clear();
    stops.clear();
    Enable(script);
  }

  void Stood() {
    const ScriptPlace& place = Debugger().Place();
    stops += (stops.empty() ? "" : " ") + std::to_string(place.line);
    if (!place.why.empty()) stops += "(" + Utf8Of(place.why) + ")";
    if (whileStanding) whileStanding();
    std::string command;
    if (!(commands >> command)) command = "go";
    loop.Outside(10s, [this, command] { Do(command); });
  }

  void Do(const std::string& command) {
    if (command == "go") Debugger().Go();
    if (command == "into") Debugger().StepInto();
    if (command == "over") Debugger().StepOver();
    if (command == "out") Debugger().StepOut();
    if (command == "off") Box().SetChecked(false);
    if (command == "signal") frm.Unload(EndCause::Signal);
    if (command == "close") frm.Unload();
    if (std::isdigit(command.front()) != 0) Debugger().RunTo(std::stoi(command));
  }

  std::istringstream commands;
  std::string stops;
  std::function<void()> whileStanding;
};

constexpr const char* steps = R"(Dim n

Sub Outer(x)
  Inner x
  n = n + x
End Sub
Sub Inner(x)

  n = n + 1
End Sub
For i = 1 To 3
  Outer i
Next
On Error Resume Next
n = n \ 0
On Error GoTo 0
n = n \ 0
)";

struct DebugCase {
  std::vector<Breakpoint> breakpoints;
  ErrorStops errors;
  const char* commands;
  const char* stops;
};

TEST_F(DebuggerRig, BreakpointsStepsAndErrorsStandWhereTheyShould) {
  const std::vector<DebugCase> cases{
      {{{9, u""}}, ErrorStops::None, "", "9 9 9"},
      {{{7, u""}}, ErrorStops::None, "", "9 9 9"},  // moved to the next line that does something
      {{{99, u""}}, ErrorStops::None, "", ""},
      {{{9, u"x = 2"}}, ErrorStops::None, "", "9"},
      {{{9, u"x = nobody"}},
       ErrorStops::None,
       "",
       "9(the condition x = nobody: Variable is undefined: 'nobody') 9(the condition x = nobody: Variable is "
       "undefined: 'nobody') 9(the condition x = nobody: Variable is undefined: 'nobody')"},
      {{{12, u""}}, ErrorStops::None, "into into into into into into go", "12 4 9 10 5 6 13 12 12"},
      {{{12, u""}}, ErrorStops::None, "over over over over", "12 13 12 13 12"},
      {{{9, u"x = 1"}}, ErrorStops::None, "out out over", "9 5 13 12"},
      {{{9, u"x = 1"}}, ErrorStops::None, "6 13", "9 6 13"},
      {{{9, u"x = 1"}}, ErrorStops::None, "over over over over over", "9 10 5 6 13 12"},
      {{}, ErrorStops::All, "", "15(Division by zero) 17(Division by zero)"},
      {{}, ErrorStops::Uncaught, "", "17(Division by zero)"},
      {{{9, u""}}, ErrorStops::None, "off", "9"},
  };
  for (const DebugCase& each : cases) {
    SCOPED_TRACE(each.stops);
    Debugger().SetErrorStops(each.errors);
    Debugger().SetBreakpoints(File(), each.breakpoints);
    Debug(steps, each.commands);
    EXPECT_EQ(stops, each.stops);
    const bool ended = std::string_view(each.commands) == "off";
    EXPECT_EQ(prompts.shown.size(), ended ? 0U : 1U) << "the last line's error, unless it was ended before";
    prompts.shown.clear();
    EXPECT_FALSE(Box().Checked());
  }
}

TEST_F(DebuggerRig, APauseStandsAtTheNextProcedureThatTheProgramCalls) {
  Enable(R"(Sub ReceiveString
  StringReceived.OutputString = StringReceived.InputString
End Sub
Sub SendString
  StringToSend.OutputString = StringToSend.InputString
End Sub)");
  Debugger().Pause();
  commands.str("over over over go");
  Run({"1\r\n", "2\r\n"}, 2);
  Pass(60s);
  EXPECT_EQ(stops, "5 6 2 3");
}

TEST_F(DebuggerRig, WhileAHookStandsTheRunsAnswersWaitAndNoneTimesOut) {
  Debugger().SetBreakpoints(File(), {{2, u""}});
  Enable(
      "Sub ReceiveString\n  n = n + 1\n  StringReceived.OutputString = StringReceived.InputString\nEnd Sub");
  whileStanding = [this] {
    EXPECT_EQ(controls().status.lblStatusCycle.Caption(), "waits at line 2 of test.vbs (F8)");
    if (stops == "2") scale.ReceiveAfter(3s, "77\r\n");
  };
  Run({"1\r\n", "2\r\n", "3\r\n", "4\r\n", "5\r\n"}, 4);
  Pass(60s);
  EXPECT_GE(controls().counters.Label7.Integer(), 4);
  const auto shown = Shown();
  EXPECT_TRUE(
      std::any_of(shown.begin(), shown.end(), [](const auto& line) { return line.find("77") != line.npos; }));
  EXPECT_EQ(controls().counters.lblerror.Caption(), "0");
  EXPECT_EQ(controls().status.lblStatusCycle.Caption(), "");
}

TEST_F(DebuggerRig, ADeadlineHasAfterwardsWhatItHadLeft) {
  Enable("Sub InitTask: TimerTask.Interval = 10: End Sub\nSub Task\n  n = n + 1\nEnd Sub");
  int requests = 0;
  scale.AnswerLines(
      '\r',
      [&](std::string_view) {
        // After 150 of its 200 ms the task stands for ten seconds; the first answer comes soon afterwards.
        loop.Outside(150ms, [&] { Debugger().SetBreakpoints(File(), {{3, u""}}); });
        return ++requests == 1 ? "1\r\n" : "";
      },
      10180ms);
  whileStanding = [&] { Debugger().SetBreakpoints(File(), {}); };
  controls().run.Text1.SetText("2");
  StartCycle();
  while (requests < 2) Pass(1s);
  EXPECT_EQ(controls().counters.lblerror.Caption(), "0");
  Pass(10500ms);
  EXPECT_EQ(stops.substr(0, 3), "3 3");
  EXPECT_EQ(controls().counters.lblerror.Caption(), "1")
      << "an answer that never comes is missed all the same";
}

// Asked whether the script may go on, it lets a second pass, as if the script were slow.
class SlowServices : public vbs::Services {
 public:
  SlowServices(vbs::Services& inner, VirtualLoop& loop) : inner_(inner), loop_(loop) {}
  const Clock& Time() const override { return inner_.Time(); }
  int MsgBox(std::u16string_view text, std::int32_t style, std::u16string_view title) override {
    return inner_.MsgBox(text, style, title);
  }
  std::optional<std::u16string> InputBox(std::u16string_view, std::u16string_view,
                                         std::u16string_view) override {
    return std::nullopt;
  }
  std::filesystem::path Folder() const override { return inner_.Folder(); }
  bool MayGoOn() override {
    loop_.Pause(loop_.Now() + 1s);
    return inner_.MayGoOn();
  }

 private:
  vbs::Services& inner_;
  VirtualLoop& loop_;
};

class SlowDebuggerRig : public DebuggerRig {
 protected:
  SlowDebuggerRig() {
    engines = [this](std::string_view, vbs::Services& services) {
      slow = std::make_unique<SlowServices>(services, loop);
      return std::make_unique<VbscriptEngine>(*slow);
    };
  }
  ~SlowDebuggerRig() override { Box().SetChecked(false); }

  std::unique_ptr<SlowServices> slow;
};

TEST_F(SlowDebuggerRig, AScriptThatNeverYieldsCanBePausedAndEnded) {
  struct {
    const char* script;
    const char* word;
    const char* commands;
    const char* stops;
  } const cases[] = {
      {"Do: Loop", "pause", "into off", "1 1"},
      {"n = 1\nWhile n > 0\n  n = n + 1\nWend", "break", "off", "3"},
      {"Function F: Do: F = F + 1: Loop: End Function\nOn Error Resume Next\nF", "off", "", ""},
      {"On Error Resume Next\nDo: n = n + 1: Loop", "close", "", ""},
  };
  const Instant begin = loop.Now();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.script);
    Debugger().SetBreakpoints(File(), {});
    loop.Outside(3s, [&] {
      if (each.word == std::string_view("pause")) Debugger().Pause();
      if (each.word == std::string_view("break")) Debugger().SetBreakpoints(File(), {{3, u""}});
      if (each.word == std::string_view("off")) Box().SetChecked(false);
      if (each.word == std::string_view("close")) frm.Unload();
    });
    Debug(each.script, each.commands);
    EXPECT_EQ(stops, each.stops);
    EXPECT_EQ(prompts.shown, std::vector<std::string>()) << "neither the guard's question nor an error";
    EXPECT_TRUE(!Box().Checked() || frm.Script().Runner().WaitsForbidden());
  }
  EXPECT_LT(loop.Now() - begin, 45s) << "four words after three seconds each, three stands of ten";
  Pass(1s);
  EXPECT_TRUE(loop.ExitStatus().has_value());
}

TEST_F(SlowDebuggerRig, AScriptThatNeverYieldsMakesRoomForTheNext) {
  loop.Outside(3s, [this] {
    Load("AppendLog.RichAppendText 0, \"next\"");
    frm.Script().RunFile("test.vbs");
  });
  Enable("Do: Loop");
  Pass(1s);
  EXPECT_TRUE(frm.Script().Runner().Loaded());
  EXPECT_EQ(Shown().back(), "next");
  EXPECT_EQ(prompts.shown, std::vector<std::string>());
}

TEST_F(SlowDebuggerRig, TheGuardsQuestionSaysWhereTheScriptIsAndMakesRoomForTheWindows) {
  prompts.answers = {0, 1};
  Instant answered{};
  Instant served{};
  prompts.whileShown = [&] {
    if (prompts.shown.size() > 1) return;
    answered = loop.Now();
    loop.Outside(0s, [&] { served = loop.Now(); });
  };
  Enable("Sub Busy\n  Do: Loop\nEnd Sub\nExecute \"Busy\"");
  const std::string question =
      "Quarlin: The script is not responding. Stop it?\n\ntest.vbs is at line 2, in Busy";
  ASSERT_EQ(prompts.shown.size(), 3U);
  EXPECT_EQ(prompts.shown[0], question);
  EXPECT_EQ(prompts.shown[1], question);
  EXPECT_EQ(served, answered) << "or the box would stay on the screen";
  EXPECT_EQ(controls().status.lblStatusNote.Caption(), "test.vbs was stopped at line 2: it did not respond");
}

TEST_F(SlowDebuggerRig, TheGuardDoesNotCountTheTimeOfAStand) {
  Debugger().SetBreakpoints(File(), {{2, u""}});
  whileStanding = [this] {
    loop.Pause(loop.Now() + 1h);
    EXPECT_EQ(Utf8Of(Debugger().Evaluate(0, u"Busy(3000)").text), "3001");
    EXPECT_EQ(Utf8Of(Debugger().Evaluate(0, u"Busy(1e9)").text), "The script was stopped");
  };
  Debug(
      "For i = 1 To 20000: Next\nn = 1\nFor i = 1 To 20000: Next\nFunction Busy(n): For Busy = 1 To n: Next: "
      "End Function",
      "");
  EXPECT_EQ(stops, "2");
  EXPECT_EQ(prompts.shown, std::vector<std::string>());
}

TEST_F(DebuggerRig, TheEndOfTheProgramEndsAStandInOrder) {
  Debugger().SetBreakpoints(File(), {{2, u""}});
  Enable(
      "Sub SendString\n  n = 1\n  AppendLog.RichAppendText 0, \"on\"\nEnd Sub\n"
      "Sub EndTask: AppendLog.RichAppendText 0, \"the end\": End Sub");
  commands.str("signal");
  controls().cycle.CBOSEND.SetText("W");
  controls().cycle.cmdSend.Click();
  Pass(60s);
  EXPECT_EQ(stops, "2");
  const auto shown = Shown();
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "the end"), 1);
  EXPECT_TRUE(loop.ExitStatus().has_value());
}

TEST_F(DebuggerRig, WhatIsEndedWhereItStandsDoesNothingMoreAndMayBeginAnew) {
  const char* script =
      "Class C\n  Sub Class_Terminate\n    n = 1\n  End Sub\nEnd Class\n"
      "Sub SendString\n  Set o = New C\n  Set o = Nothing\n  AppendLog.RichAppendText 0, \"behind\"\n"
      "End Sub\nAppendLog.RichAppendText 0, \"begun\"";
  Debugger().SetBreakpoints(File(), {{3, u""}});
  Enable(script);
  whileStanding = [this] { loop.Outside(1s, [this] { frm.Script().RunFile("test.vbs"); }); };
  commands.str("wait");
  controls().cycle.CBOSEND.SetText("W");
  controls().cycle.cmdSend.Click();
  Pass(60s);
  EXPECT_EQ(stops, "3");
  EXPECT_TRUE(Box().Checked() && frm.Script().Runner().Loaded());
  const auto shown = Shown();
  EXPECT_EQ(std::count(shown.begin(), shown.end(), "begunbegun"), 1);
  EXPECT_TRUE(prompts.shown.empty());
  Box().SetChecked(false);
}

TEST_F(DebuggerRig, AHookIsNotEnteredWhileTaskWaitsAndFinishIsNoError) {
  Debugger().SetErrorStops(ErrorStops::All);
  Debugger().SetBreakpoints(File(), {{2, u""}, {6, u""}, {8, u""}});
  Enable(R"(Sub ReceiveString
  StringReceived.OutputString = StringReceived.InputString
End Sub
Sub InitTask: TimerTask.Interval = 1000: End Sub
Sub Task
  answer = FormMain.WaitAnswer(5000)
  AppendLog.RichAppendText 0, answer
  FormMain.Finish 3
End Sub)");
  scale.ReceiveAfter(30s, "7.5\r\n");
  whileStanding = [this] {
    EXPECT_EQ(Utf8Of(Debugger().Evaluate(0, u"FormMain.WaitAnswer(1)").text),
              "A script may wait only in its top-level code, in InitTask and in Task");
  };
  Pass(60s);
  EXPECT_EQ(stops, "6 8");
  EXPECT_EQ(loop.ExitStatus(), 3);
  EXPECT_TRUE(prompts.shown.empty());
}

struct ShownCase {
  const char* expression;
  const char* type;
  const char* text;
  const char* parts;  // of what opens
};

std::string Told(const ShownParts& parts) {
  std::string told;
  for (const ShownValue& row : parts.rows) {
    told += Utf8Of(row.name) + " " + Utf8Of(row.text) + (row.opens ? "+" : "") + "; ";
  }
  return told + (parts.more ? "more" : "");
}

TEST_F(DebuggerRig, ValuesAreShownInWordsAndOpenInPieces) {
  const std::vector<ShownCase> cases{
      {"1 / 2", "Double", "0.5", ""},
      {"\"a\"\"b\" & vbCrLf & Chr(127)", "String", "\"a\"\"b\u240d\u240a\u2421\"", ""},
      {"Len(String(300, \"x\"))", "Long", "300", ""},
      {"Empty", "Empty", "Empty", ""},
      {"Nothing", "Nothing", "Nothing", ""},
      {"#3/15/2024#", "Date", "#3/15/2024#", ""},
      {"table", "Variant()", "(0 To 1, 0 To 1)", "(0, 0) 1; (1, 0) Empty; (0, 1) Empty; (1, 1) 4; "},
      {"unsized", "Variant()", "(not sized)", ""},
      {"words", "Dictionary", "Dictionary", "Count 2; CompareMode 0; (\"a\") 1; (2) 5; "},
      {"m", "Meter", "Meter", "offset 3; list (0 To 0)+; "},
      {"m.Explode", "", "Division by zero", ""},
      {"FormMain.CBOSEND", "ComboBox", "ComboBox \"READ\"", "..."},
      {"many", "Variant()", "(0 To 249)", "..."},
  };
  whileStanding = [&] {
    for (const ShownCase& each : cases) {
      SCOPED_TRACE(each.expression);
      const ShownValue shown = Debugger().Evaluate(0, Utf16Of(each.expression));
      EXPECT_EQ(Utf8Of(shown.type), each.type);
      EXPECT_EQ(Utf8Of(shown.text), each.text);
      const std::string_view parts = each.parts;
      EXPECT_EQ(shown.opens, !parts.empty());
      EXPECT_EQ(parts == "..." ? parts : Told(PartsOf(shown.value)), parts);
    }
    const ShownValue many = Debugger().Evaluate(0, u"many");
    EXPECT_TRUE(PartsOf(many.value, 100).more);
    EXPECT_EQ(PartsOf(many.value, 200).rows.back().name, u"(249)");
    EXPECT_EQ(PartsOf(Debugger().Evaluate(0, u"FormMain").value).rows.size(), shownAtOnce);
  };
  Debugger().SetBreakpoints(File(), {{13, u""}});
  Debug(R"(Class Meter
  Private offset, list(0)
  Private Sub Class_Initialize: offset = 3: End Sub
  Public Property Get Explode: Explode = 1 \ 0: End Property
End Class
Dim table(1, 1), unsized(), many(249), words, m
table(0, 0) = 1
table(1, 1) = 4
Set words = CreateObject("Scripting.Dictionary")
words("a") = 1
words(2) = 5
Set m = New Meter
n = 1)",
        "");
  EXPECT_EQ(stops, "13");
}

}  // namespace
}  // namespace quarlin
