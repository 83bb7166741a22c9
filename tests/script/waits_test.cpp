// SPDX-License-Identifier: GPL-3.0-or-later
// A script that waits while the program goes on, and one that says how the program ends.

#include <gtest/gtest.h>

#include "support/script_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class WaitsRig : public ScriptRig {
 protected:
  // What the script has said with Say, and nothing else.
  std::string Said() { return frm.Script().Panel().controls.txtOutput.Text(); }
  void Enable(const std::string& script) {
    frm.Script().Panel().controls.txtOutput.SetText("");
    ScriptRig::Enable("Sub Say(text): txtOutput = txtOutput & text & \";\": End Sub\r\n" + script);
  }
  std::string Label7() { return controls().counters.Label7.Caption(); }
};

struct PlaceCase {
  const char* name;
  const char* script;
  const char* said;
};

TEST_F(WaitsRig, AScriptMayWaitOnlyWhereTheProgramDoesNotWaitForIt) {
  const std::vector<PlaceCase> cases{
      {"top-level code", "FormMain.Sleep 500: Say Err.Number", "0;"},
      {"InitTask", "Sub InitTask: FormMain.Sleep 500: Say Err.Number: End Sub", "0;"},
      {"code made at run time", "Sub InitTask: Execute \"FormMain.Sleep 500\": Say Err.Number: End Sub",
       "0;"},
      {"a hook", "Sub SendString: Try: End Sub", "5;"},
      {"a hook that goes on", "Sub ReceiveString: Try: Try: End Sub", "5;5;"},
      {"each character", "Sub ReceiveChar: If CharReceived.InputString = \"x\" Then Try\r\nEnd Sub", "5;"},
      {"the end of the script",
       "Class Last: Sub Class_Terminate: Try: End Sub: End Class\r\nSet heavy = New Last", "5;"},
      {"a time below 0", "On Error Resume Next: FormMain.Sleep -1: Say Err: FormMain.WaitAnswer -1: Say Err",
       "5;5;"},
      {"no time", "FormMain.Sleep 0: Say IsEmpty(FormMain.WaitAnswer(0))", "True;"},
      {"only of the window", "Finish = 1: Sleep = 2: WaitAnswer = 3: Say Finish + Sleep + WaitAnswer", "6;"},
  };
  for (const PlaceCase& row : cases) {
    SCOPED_TRACE(row.name);
    Enable(std::string("Sub Try: On Error Resume Next: FormMain.Sleep 1: Say Err.Number: End Sub\r\n") +
           row.script);
    Send("b");
    Receive("x\r\n");
    Box().SetChecked(false);
    EXPECT_EQ(Said(), row.said);
  }
}

TEST_F(WaitsRig, TheProgramGoesOnAndTheScriptIsNotEntered) {
  scale.AnswerLines(
      '\r', [](std::string_view) { return "7\r\n"; }, 1ms);
  controls().run.txtInterval.SetText("10");
  controls().cycle.CBOSEND.SetText("READ");
  Enable(
      "Sub InitTask: Interval = 100: End Sub\r\n"
      "Sub Task: tasks = tasks + 1: Command1.Click: FormMain.Sleep 20000: Command1.Click: Say tasks: End "
      "Sub\r\n"
      "Dim tasks\r\n"
      "Sub SendString: StringToSend.OutputString = \"no\": End Sub\r\n"
      "Sub ReceiveString: StringReceived.OutputString = \"no\": End Sub");
  bool looked = false;
  loop.Outside(20s, [&] {
    looked = true;
    EXPECT_EQ(Said(), "");
    EXPECT_TRUE(Running());
    EXPECT_EQ(Last(), "7\r\n");
    EXPECT_GE(std::stoi(Label7()), 1900);
    Box().SetChecked(false);
  });
  Pass(1s);  // the wait in it takes its own time
  EXPECT_TRUE(looked);
  EXPECT_EQ(prompts.shown, Lines()) << "twenty seconds of waiting are not the script's";
}

TEST_F(WaitsRig, AnswersComeOneByOneAndAreCountedAsEver) {
  scale.AnswerLines('\r', ScriptedDevice::InTurn({"1\r\n", "2\r\n", "ERR\r\n", "4\r\n"}), 30ms);
  Enable(
      "Sub InitTask\r\n Say TypeName(FormMain.WaitAnswer(100))\r\n"
      " For i = 1 To 4\r\n  start = Timer: FormMain.SendString \"READ\" & vbCr\r\n"
      "  a = FormMain.WaitAnswer(200): Say Replace(a, vbCrLf, \"!\")\r\n Next\r\nEnd Sub");
  EXPECT_EQ(Said(), "Empty;1!;2!;;4!;");
  EXPECT_EQ(Label7(), "3");
  EXPECT_EQ(Last(), "4\r\n");
  EXPECT_EQ(Shown(), (Lines{"1", "2", "ERR", "4"}));
}

TEST_F(WaitsRig, BehindABoxTheProgramGoesOnAlsoOnceTheAnswerIsThere) {
  frm.Configuration().Edited.AboutToEdit(controls().run.Check1, "Wait Answer");
  controls().run.Check1.SetChecked(!controls().run.Check1.Checked());
  prompts.saveAnswer = SaveAnswer::Cancel;
  prompts.whileShown = [this] {
    for (const char* answer : {"1\r\n", "2\r\n", "3\r\n"}) Receive(answer);
    EXPECT_EQ(Label7(), "3");
  };
  loop.Outside(1s, [&] { frm.RequestUnload(); });
  Enable(
      "Sub InitTask: Say Left(FormMain.WaitAnswer(5000), 1): Say TypeName(FormMain.WaitAnswer(10)): End Sub");
  EXPECT_EQ(prompts.shown.size(), 1U);
  EXPECT_EQ(Said(), "1;Empty;");
}

TEST_F(WaitsRig, WhoeverStopsTheScriptEndsItsWait) {
  struct Row {
    const char* name;
    std::function<void()> action;
    bool on;
    const char* said;
  };
  const std::vector<Row> rows{
      {"the box", [this] { Box().SetChecked(false); }, false, "waits;"},
      {"off and on",
       [this] {
         Box().SetChecked(false);
         Box().SetChecked(true);
       },
       true, "waits;waits;behind;"},
      {"the panel", [this] { frm.Script().Panel().controls.cmdExit.Click(); }, false, "waits;"},
      {"Disconnect", [this] { Connect(); }, true, "waits;behind;"},
      {"an unplugged cable", [this] { scale.Unplug(); }, true, "waits;behind;"},
      {"closing the window", [this] { frm.Unload(); }, true, "waits;"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Box().SetChecked(false);
    bool happened = false;
    Enable(
        "Sub InitTask: Interval = 10: End Sub\r\n"
        "Sub Task: On Error Resume Next: If tried Then Exit Sub\r\n"
        " tried = True: Say \"waits\": FormMain.WaitAnswer 60000: Say \"behind\": End Sub\r\nDim tried");
    loop.Outside(1s, [&] {
      row.action();
      happened = true;
    });
    loop.Outside(2s, [&] { EXPECT_TRUE(happened); });
    Pass(61s);
    EXPECT_EQ(Said(), row.said);
    EXPECT_EQ(On(), row.on);
    EXPECT_EQ(prompts.shown, Lines());
  }
  EXPECT_EQ(loop.ExitStatus(), 0);
}

struct FinishCase {
  const char* script;
  int status;
  const char* reason;
  const char* said;
};

TEST_F(WaitsRig, AScriptSaysWithWhichStatusTheProgramEnds) {
  const std::vector<FinishCase> cases{
      {"FormMain.Finish 3: Say \"on\"", 3, "the script finished with status 3", "end;"},
      {"Sub InitTask: On Error Resume Next: FormMain.Finish 0: Say \"on\": End Sub", 0, "", "end;"},
      {"Sub InitTask: FormMain.SignalError 1: FormMain.Finish 0: End Sub", 0, "", "end;"},
      {"Sub SendString: Say \"asked\": StringToSend.OutputString = \"out\": FormMain.Finish 255: End Sub",
       255, "the script finished with status 255", "asked;end;"},
      {"Sub InitTask: Interval = 1: End Sub\r\nSub Task: FormMain.Sleep 5: FormMain.Finish 2: End Sub", 2,
       "the script finished with status 2", "end;"},
      {"FormMain.Finish 4\r\nSub InitTask: FormMain.Finish 5: End Sub", 4,
       "the script finished with status 4", "end;"},
      {"On Error Resume Next: FormMain.Finish 256: Say Err: FormMain.Finish -1: Say Err: FormMain.Finish 1",
       1, "the script finished with status 1", "5;5;end;"},
  };
  for (const FinishCase& row : cases) {
    SCOPED_TRACE(row.script);
    FrmMain other(
        {loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }, true, engines});
    Write("test.vbs", std::string("Sub Say(text): txtOutput = txtOutput & text & \";\": End Sub\r\n"
                                  "Sub EndTask: Say \"end\": End Sub\r\n") +
                          row.script);
    scale.ForgetWritten();
    if (scale.IsOpen()) Connect();
    other.controls.connection.cboSerial.SetText("COM1");
    other.controls.connection.cmdOpen.Click();
    other.controls.script.txtScriptFile.SetText("test.vbs");
    other.controls.script.chkEnableScript.SetChecked(true);
    other.controls.cycle.cmdSend.Click();
    other.controls.cycle.cmdSend.Click();
    Pass(1s);
    EXPECT_EQ(loop.ExitStatus(), row.status);
    EXPECT_EQ(scale.Written().starts_with("out"), row.status == 255) << "what a hook hands on still goes out";
    EXPECT_EQ(other.Ending().reason, row.reason);
    EXPECT_EQ(other.Script().Panel().controls.txtOutput.Text(), row.said);
    EXPECT_EQ(prompts.shown, Lines());
  }
}

}  // namespace
}  // namespace quarlin
