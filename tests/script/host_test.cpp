// SPDX-License-Identifier: GPL-3.0-or-later
// The host of scripts in the whole program: how a script is switched on and off, what its hooks do to the
// traffic, its task, its errors, and what happens when it pulls the ground from under itself.

#include <gtest/gtest.h>

#include "support/script_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

struct HookCase {
  const char* script;
  const char* received;  // two answers, one after the other
  const char* second;
  const char* last;  // what the first and the second became
  const char* secondLast;
};

TEST_F(ScriptRig, AHookReplacesWhatWasReceived) {
  const std::vector<HookCase> cases{
      {"Sub ReceiveString: StringReceived.OutputString = StringReceived.InputString & \"!\": End Sub",
       "12.5\r\n", "13\r\n", "12.5\r\n!", "13\r\n!"},
      // never assigned: the value of the call before, at first nothing
      {"Sub ReceiveString: If Left(StringReceived.InputString, 1) = \"1\" Then StringReceived.OutputString = "
       "\"one\": "
       "End Sub",
       "1\r\n", "2\r\n", "one", "one"},
      {"Sub InitTask: End Sub", "as it is\r\n", "again\r\n", "as it is\r\n", "again\r\n"},
      // an error leaves what was assigned before
      {"Sub ReceiveString: StringReceived.OutputString = \"before\": x = 1 / 0: End Sub", "1\r\n", "2\r\n",
       "before", "before"},
      // each character by itself
      {"Sub ReceiveChar\r\n c = CharReceived.InputString\r\n If c = \"a\" Then c = ChrW(8364) & \"b\"\r\n"
       " CharReceived.OutputString = c\r\nEnd Sub",
       "a-a\r\n", "\xFF\r\n", "?b-?b\r\n", "\xFF\r\n"},
  };
  for (const HookCase& row : cases) {
    SCOPED_TRACE(row.script);
    Enable(row.script);
    Receive(row.received);
    EXPECT_EQ(Last(), row.last);
    Receive(row.second);
    EXPECT_EQ(Last(), row.secondLast);
  }
}

TEST_F(ScriptRig, AStringBeforeTheFirstAssignmentIsEmpty) {
  Enable("Sub ReceiveString: End Sub");
  Receive("12.5\r\n");
  EXPECT_EQ(Last(), "");
  EXPECT_EQ(controls().counters.lbllen.Caption(), "0");
}

TEST_F(ScriptRig, WhatIsSentIsTheScripts) {
  Enable("Sub SendString: StringToSend.OutputString = UCase(StringToSend.InputString): End Sub");
  Send("read");
  EXPECT_EQ(scale.Written(), "READ\r\n");
  EXPECT_EQ(Shown().back(), "READ");
  Box().SetChecked(false);
  Send("read");
  EXPECT_EQ(scale.Written(), "READ\r\nread\r\n");
}

TEST_F(ScriptRig, AScriptsOwnSendDoesNotEnterItAgain) {
  Enable(
      "Sub SendString\r\n StringToSend.OutputString = \"<\" & StringToSend.InputString & \">\"\r\n"
      " FormMain.SendString \"own\"\r\nEnd Sub\r\n"
      "Sub ReceiveString: FormMain.SendString \"answer\": StringReceived.OutputString = \"x\": End Sub");
  Send("READ");
  EXPECT_EQ(scale.Written(), "<READ\r\n>own");
  Receive("1\r\n");
  EXPECT_EQ(scale.Written(), "<READ\r\n>ownanswer");
}

TEST_F(ScriptRig, ErrorsInHooksAreCountedAndShown) {
  Enable("Sub ReceiveString\r\n StringReceived.OutputString = Empty\r\n Err.Raise 5\r\nEnd Sub");
  Receive("1\r\n");
  Receive("2\r\n");
  EXPECT_EQ(ScriptErrors(), "2");
  EXPECT_EQ(Note(), "script error 2 in ReceiveString, line 3: Invalid procedure call or argument");
  EXPECT_TRUE(On());
  EXPECT_EQ(prompts.shown, Lines());
  Enable("Sub InitTask: End Sub");
  EXPECT_EQ(ScriptErrors(), "0");
}

struct EnableCase {
  const char* name;
  std::vector<std::pair<const char*, const char*>> files;
  int chosen;  // entry of the list; -1 for Exit
  bool on;
  int lists;
  Lines shown;
};

TEST_F(ScriptRig, SwitchingOnDependsOnTheFiles) {
  const std::string text = "Sub InitTask: RichAppendText 0, \"runs\": End Sub";
  const std::vector<EnableCase> cases{
      {"no files", {}, 0, true, 0, {}},
      {"only other languages are not even listed", {{"a.js", "x"}}, 0, true, 0, {}},
      {"Exit without a choice", {{"a.vbs", "x = 1"}}, -1, false, 1, {}},
      {"in any case", {{"A.VBS", "RichAppendText 0, \"runs\""}}, 0, true, 1, {}},
      {"the name holds .vbs", {{"a.vbs", "x"}, {"b.vbs.js", "RichAppendText 0, \"runs\""}}, 1, true, 1, {}},
      {"a language without an engine",
       {{"a.vbs", "x"}, {"b.js", "y"}},
       1,
       false,
       1,
       {"Quarlin: ## ERROR in b.js\r\nActiveX component can't create object: 'JScript'\r\nLine:0 Column:0\r\n"
        "VBScript runtime error\r\n\r\n"}},
      {"a syntax error",
       {{"a.vbs", "x = 1\r\n  y = \"2\r\n"}},
       0,
       false,
       1,
       {"Quarlin: ## ERROR in a.vbs\r\nUnterminated string constant\r\nLine:2 Column:8\r\nVBScript "
        "compilation "
        "error\r\n\r\n"
        "  y = \"2"}},
      {"an error in InitTask",
       {{"a.vbs", "Sub InitTask\r\n  NoSuch 1\r\nEnd Sub"}},
       0,
       false,
       1,
       {"Quarlin: ## ERROR in a.vbs\r\nType mismatch: 'NoSuch'\r\nLine:2 Column:2\r\n"
        "VBScript runtime error\r\n\r\n  NoSuch 1"}},
  };
  for (const EnableCase& row : cases) {
    SCOPED_TRACE(row.name);
    TempFolder place;
    for (const auto& [name, content] : row.files) ASSERT_FALSE(WriteWholeFile(place / name, content));
    FrmMain other(
        {loop, ProgramFolder(place.Path()), ports, prompts, opener, [] { return 0.5; }, false, engines});
    int lists = 0;
    FrmScript& list = other.Script().List();
    list.OnModal = [&] {
      ++lists;
      list.controls.lstScript.SetListIndex(row.chosen);
      (row.chosen < 0 ? list.controls.cmdExit : list.controls.cmdSelect).Click();
    };
    prompts.shown.clear();
    other.controls.script.chkEnableScript.SetChecked(true);
    EXPECT_EQ(other.controls.script.chkEnableScript.Checked(), row.on);
    EXPECT_EQ(lists, row.lists);
    EXPECT_EQ(prompts.shown, row.shown);
    const bool runs = row.on && row.lists > 0;
    EXPECT_EQ(other.controls.display.txtric.Ring().Bytes(), runs ? 4U : 0U);
    EXPECT_FALSE(other.controls.script.tmrTask.Enabled());
  }
}

TEST_F(ScriptRig, TheListOffersVbsThenJsAndRemembersTheChoice) {
  for (const char* name : {"b.VBS", "a.js", "A.vbs", "c.txt"}) Write(name, "x = 1");
  Lines offered;
  int selected = -2;
  const auto look = [&](FrmScript& list) {
    offered.clear();
    for (const ListEntry& entry : list.controls.lstScript.List()) offered.push_back(entry.text);
    selected = list.controls.lstScript.ListIndex();
  };
  whileListed = [&](FrmScript& list) {
    look(list);
    list.controls.lstScript.SetListIndex(1);
    list.controls.chkTopMost.SetChecked(true);
    list.controls.chkCommand.SetChecked(true);
    list.controls.lstScript.DblClick();
  };
  Box().SetChecked(true);
  EXPECT_EQ(offered, (Lines{"A.vbs", "b.VBS", "a.js"}));
  EXPECT_EQ(selected, -1);
  EXPECT_EQ(controls().script.txtScriptFile.Text(), "b.VBS");
  EXPECT_EQ(Box().ToolTipText(), "b.VBS");
  EXPECT_EQ(controls().script.cmdEditScript.ToolTipText(), "b.VBS");
  EXPECT_TRUE(frm.Script().Panel().Visible());
  EXPECT_TRUE(frm.Script().Panel().TopMost());
  controls().script.cmdEditScript.Click();
  EXPECT_EQ(opener.opened, Lines{"b.VBS"});

  frm.Script().Panel().controls.cmdExit.Click();
  EXPECT_FALSE(On());
  EXPECT_FALSE(frm.Script().Panel().Visible());
  whileListed = look;  // closed by its window's button
  Box().SetChecked(true);
  EXPECT_EQ(selected, 1);
  EXPECT_TRUE(On()) << "the choice before still holds";
  EXPECT_FALSE(frm.Script().Panel().TopMost());

  Box().SetChecked(false);
  whileListed = [&](FrmScript& list) {
    std::filesystem::remove(folder / "b.VBS");
    list.controls.cmdSelect.Click();
  };
  Box().SetChecked(true);
  EXPECT_FALSE(On());
  EXPECT_EQ(prompts.shown, Lines{"Quarlin: Error or wrong script !!"});
  EXPECT_EQ(Box().ToolTipText(), "");
}

TEST_F(ScriptRig, TheTaskSendsOnceASecondAfterTheStart) {
  controls().run.chkhhmmss.SetChecked(true);
  controls().display.chkLog.SetChecked(true);
  Enable(
      "Sub InitTask: TimerTask.SendString = \"READ\": TimerTask.Interval = 1000: End Sub\r\n"
      "Sub Task: Interval = 1: RichAppendText 0, \"t\": End Sub");
  Pass(999ms);
  EXPECT_EQ(scale.Written(), "");
  Pass(1ms);
  EXPECT_EQ(scale.Written(), "READ");
  Pass(3s);
  EXPECT_EQ(scale.Written(), "READ");
  EXPECT_EQ(Shown(), (Lines{"t", "READ", "ttt"})) << "the interval was read once";
  EXPECT_EQ(FileText("LOG.TXT"), "-->21/11/26 10:00:01\r\nREAD");
}

TEST_F(ScriptRig, ATasksTextWaitsForTheLinkAndPassesTheHook) {
  Connect();  // disconnects
  Enable(
      "Sub InitTask: Interval = 100: TimerTask.SendString = \"x\": End Sub\r\n"
      "Sub Task: End Sub\r\n"
      "Sub SendString: StringToSend.OutputString = \"<\" & StringToSend.InputString & \">\": End Sub");
  Pass(1s);
  EXPECT_EQ(scale.Written(), "");
  Connect();
  Pass(100ms);
  EXPECT_EQ(scale.Written(), "<x>");
}

TEST_F(ScriptRig, AnErrorInTheTaskSwitchesScriptingOff) {
  Enable(
      "Sub InitTask: Interval = 100: End Sub\r\nSub Task: SendString = \"x\": Err.Raise 1000, \"me\", "
      "\"sick\": End Sub");
  Pass(1s);
  EXPECT_FALSE(On());
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_EQ(prompts.shown[0].substr(0, 59),
            "Quarlin: ## ERROR in test.vbs\r\nsick\r\nLine:2 Column:28\r\nme\r\n");
  EXPECT_EQ(scale.Written(), "");
}

TEST_F(ScriptRig, ObjectsKeepTheirValuesFromOneScriptToTheNext) {
  Enable("Sub InitTask: Interval = 50: TextIO(0) = 7: CharReceived.OutputString = \"kept\": End Sub");
  Enable("Sub InitTask: RichAppendText 0, Interval & TextIO(0) & CharReceived.OutputString: End Sub");
  EXPECT_EQ(Shown(), Lines{"507kept"});
  EXPECT_TRUE(controls().script.tmrTask.Enabled());
  frm.Script().Panel().controls.cmdExit.Click();
  Enable("Sub InitTask: RichAppendText 0, Interval & TextIO(0) & CharReceived.OutputString: End Sub");
  EXPECT_EQ(Shown(), (Lines{"507kept50kept"}));  // the panel begins afresh, the objects do not
}

// A procedure that takes away what it stands on, and what is left then.
struct LifetimeCase {
  const char* statement;
  bool on;
  bool linkOpen;
};

TEST_F(ScriptRig, AHookMayPullTheGroundFromUnderItself) {
  const std::vector<LifetimeCase> cases{
      {"chkEnableScript = 0", false, true},
      {"chkEnableScript = 0: chkEnableScript = 1", true, true},
      {"FrmCommand.cmdExit.Click", false, true},
      {"cmdOpen.Click", true, false},
      {"cmdOpen = True: cmdOpen.Click", true, true},
      {"FormMain.CommClose", true, false},
      {"FormMain.StopComunication \"enough\", \"script\"", true, false},
      {"FormMain.SignalError 2", true, true},
      {"cmdSave(1).Click", true, true},
      {"Command1.Click: Command1.Click", true, true},
      {"Set FormMain = Nothing", true, true},
  };
  for (const LifetimeCase& row : cases) {
    SCOPED_TRACE(row.statement);
    for (const char* procedure : {"ReceiveString", "ReceiveChar", "SendString"}) {
      if (!scale.IsOpen()) Connect();
      Enable(std::string("Class Heavy: Sub Class_Terminate: TextIO(7) = \"gone\": End Sub: End Class\r\n") +
             "Set heavy_ = New Heavy\r\nSub " + procedure +
             "\r\n If done Then Exit Sub\r\n done = True\r\n " + row.statement +
             "\r\n TextIO(7) = \"end\"\r\nEnd Sub");
      Receive("a\r\n");
      Send("b");
      Pass(100ms);
      EXPECT_EQ(On(), row.on);
      EXPECT_EQ(scale.IsOpen(), row.linkOpen);
      Box().SetChecked(false);
      EXPECT_EQ(frm.Script().Panel().controls.TextIO[7].Text(), "gone") << procedure;
    }
  }
}

TEST_F(ScriptRig, NothingElseRunsWhileAScriptDoes) {
  controls().run.txtInterval.SetText("10");
  controls().cycle.CBOSEND.SetText("READ");
  Enable("Sub ReceiveString: StringReceived.OutputString = MsgBox(\"Go on?\", vbYesNo, \"Test\"): End Sub");
  StartCycle();
  Pass(15ms);
  scale.ForgetWritten();
  prompts.answers = {7};
  prompts.whileShown = [this] {
    loop.Pause(loop.Now() + 1h);
    EXPECT_FALSE(loop.Alarms().FireNext(loop.Now()));
  };
  Receive("1\r\n");
  prompts.whileShown = nullptr;
  EXPECT_EQ(prompts.shown, Lines{"Test: Go on?"}) << "an hour in a box is not the script's";
  EXPECT_EQ(Last(), "7");
  Pass(100ms);
  EXPECT_NE(scale.Written(), "");
}

TEST_F(ScriptRig, EndTaskRunsBeforeTheLinkIsClosed) {
  Enable("Sub EndTask: FormMain.SendString \"BYE\": x = 1 / 0: End Sub");
  frm.Unload();
  Pass(1s);
  EXPECT_EQ(scale.Written(), "BYE");
  ASSERT_EQ(prompts.shown.size(), 1U);
  EXPECT_NE(prompts.shown[0].find("Division by zero"), std::string::npos);
  EXPECT_TRUE(loop.ExitStatus().has_value());
  EXPECT_FALSE(scale.IsOpen());
}

TEST_F(ScriptRig, WithoutAWindowTheNamedScriptIsTaken) {
  Write("other.vbs", "Sub InitTask: End Sub");
  Box().SetChecked(true);
  controls().script.txtScriptFile.SetText("OTHER.vbs");
  controls().config.cmdSave[0].Click();
  const auto load = [&] {
    auto headless = std::make_unique<FrmMain>(Surroundings{loop, ProgramFolder(folder.Path()), ports, prompts,
                                                           opener, [] { return 0.5; }, true, engines});
    headless->controls.config.cmdSave[1].Click();
    return headless->controls.script.chkEnableScript.Checked();
  };
  listsShown = 0;
  EXPECT_TRUE(load());
  EXPECT_EQ(listsShown, 0);
  EXPECT_EQ(prompts.shown, Lines());
  std::filesystem::rename(folder / "other.vbs", folder / "a.vbs");
  EXPECT_FALSE(load());
  EXPECT_EQ(prompts.shown, Lines{"SCRIPT: OTHER.vbs is not there; scripting is switched off"});
  std::filesystem::rename(folder / "a.vbs", folder / "a.js");
  EXPECT_TRUE(load());
  EXPECT_EQ(prompts.shown.back(), "SCRIPT: no script runs: there is no *.vbs file in the program folder");
}

struct MemberCase {
  const char* expression;
  const char* expected;
};

TEST_F(ScriptRig, TheMainWindowHasItsMethods) {
  const std::vector<MemberCase> cases{
      {"FormMain.Name & TypeName(FormMain)", "frmMainfrmMain"},
      {"FormMain.CommIsOpen & FormMain.CommRxEmpty", "TrueTrue"},
      {"FormMain.GetByteRead & \"<\" & FormMain.GetStringRead & \">\"", "0<>"},
      {"FormMain.CommRead & FormMain.ReceiveChar", ""},
      {"FormMain.CommWrite(\"abc\")", "3"},
      {"FormMain.SendString(\"x\") & FormMain.CommFlush()", "10"},  // what the last write took
      {"FormMain.CommReadCD(16) & FormMain.CommReadCD(32)", "TrueFalse"},
      {"FormMain.CommSetLine(2, 0) & FormMain.CommLastError", "00"},
      {"FormMain.CommSetLine(9, 0) & FormMain.CommLastErrorSource", "22CommSetLine (EscapeCommFunction)"},
      {"FormMain.CommOpen(\"COM1\") & FormMain.CommLastErrorText", "-1Port in use."},  // which also closes it
      {"FormMain.CommOpen(\"COM1\", \"9600,n,8,1\") & FormMain.CommIsOpen", "0True"},
      {"FormMain.CommClose & FormMain.CommIsOpen", "0False"},
      {"FormMain.cboSerial & FormMain.Option3(1) & FormMain.Option3.Count", "COM1True3"},
      {"FormMain.NoSuch", "error 438"},
      {"FormMain.SignalError()", "error 450"},
  };
  scale.SetModemLines(cts);
  std::string script = "Sub InitTask\r\nOn Error Resume Next\r\n";
  for (const MemberCase& row : cases) {
    script += std::string("Err.Clear\r\nr = \"\"\r\nr = ") + row.expression +
              "\r\nIf Err Then r = \"error \" & Err.Number\r\nRichAppendText 0, r & vbCrLf\r\n";
  }
  Enable(script + "End Sub");
  const Lines shown = Shown();
  ASSERT_EQ(shown.size(), cases.size());
  for (std::size_t i = 0; i < cases.size(); ++i)
    EXPECT_EQ(shown[i], cases[i].expected) << cases[i].expression;

  Enable(
      "Sub InitTask: FormMain.Caption = \"mine\": FormMain.SignalError 2: StopComunication \"m\", \"t\": End "
      "Sub");
  EXPECT_EQ(frm.Caption(), "mine");
  EXPECT_EQ(controls().counters.lblErrorLen.Caption(), "1");
  EXPECT_EQ(prompts.shown, Lines{"t: m"});
}

// An engine whose only procedure works for a while in small steps, as long as it may.
class BusyEngine : public ScriptEngine {
 public:
  BusyEngine(VirtualLoop& loop, vbs::Services& services, Duration work, int& steps)
      : loop_(loop), services_(services), work_(work), steps_(steps) {}
  void AddObject(std::u16string_view, const vbs::ObjectRef&) override {}
  void AddCode(std::u16string_view) override {}
  vbs::ObjectRef Make(std::u16string_view) override { return {}; }
  void Check(std::u16string_view) override {}
  bool HasProcedure(std::u16string_view name) const override { return name == u"ReceiveString"; }
  void Run(std::u16string_view) override {
    for (Duration done{}; done < work_; done += 10us) {
      if (!services_.MayGoOn()) throw vbs::ScriptError(vbs::invalidCall, u"stopped");
      ++steps_;
      loop_.Pause(loop_.Now() + 10us);
    }
  }

 private:
  VirtualLoop& loop_;
  vbs::Services& services_;
  Duration work_;
  int& steps_;
};

TEST_F(ScriptRig, AScriptThatDoesNotEndIsAskedAbout) {
  int steps = 0;
  engines = [&](std::string_view, vbs::Services& services) {
    return std::make_unique<BusyEngine>(loop, services, 25s, steps);
  };
  const std::string question = "Quarlin: The script is not responding. Stop it?\n\ntest.vbs";
  Enable("x");
  prompts.answers = {0, 0};
  prompts.whileShown = [this] { loop.Pause(loop.Now() + 1h); };
  Receive("1\r\n");
  EXPECT_EQ(prompts.shown, (Lines{question, question}));
  EXPECT_TRUE(On());
  EXPECT_EQ(steps, 2'500'000);

  steps = 0;
  prompts.answers = {1};
  Receive("2\r\n");
  EXPECT_NEAR(steps, 1'000'000, 1000);
  ASSERT_EQ(prompts.shown.size(), 4U);
  EXPECT_EQ(prompts.shown[2], question);
  EXPECT_NE(prompts.shown[3].find("## ERROR in test.vbs"), std::string::npos);
  EXPECT_EQ(controls().status.lblStatusNote.Caption(), "test.vbs was stopped: it did not respond");
  EXPECT_FALSE(On()) << "or every further string would bring up the question";
}

}  // namespace
}  // namespace quarlin
