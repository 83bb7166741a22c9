// SPDX-License-Identifier: GPL-3.0-or-later
// Start-up, command line, configuration and the end of the program.

#include <gtest/gtest.h>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class StartUpRig : public FrmMainRig {
 protected:
  // Leaves a config.cfg that connects to COM1 and asks `requests` times, waiting for the answers.
  void SaveRun(std::string_view requests) {
    controls().cycle.CBOSEND.SetText("READ");
    controls().run.txtInterval.SetText("10");
    controls().run.Check1.SetChecked(true);
    controls().run.Check2.SetChecked(true);
    controls().run.Text1.SetText(requests);
    controls().run.txtAnswerTime.SetText("100");
    controls().config.cmdSave[0].Click();
  }
  std::unique_ptr<FrmMain> Other(bool headless = true) {
    return std::make_unique<FrmMain>(Surroundings{loop, ProgramFolder(folder.Path()), ports, prompts, opener,
                                                  [] { return 0.5; }, headless});
  }
  void Answer() {
    scale.AnswerLines(
        '\n', [](std::string_view) { return "OK\r\n"; }, 1ms);
  }
};

TEST_F(StartUpRig, LoadRunExitRunsTheTestAndEnds) {
  Answer();
  SaveRun("5");
  const auto other = Other();
  other->Load("load run exit");
  Pass(10s);
  EXPECT_EQ(scale.Opens(), 1);
  EXPECT_EQ(other->controls.counters.lblsend.Caption(), "5");
  EXPECT_EQ(loop.ExitStatus(), 0);
  EXPECT_EQ(other->controls.counters.Label7.Caption(), "5") << "the last answer counts";
  EXPECT_EQ(other->controls.run.HScroll1.Value(), 10) << "the interval is saved by its box";
  EXPECT_FALSE(scale.IsOpen());
}

TEST_F(StartUpRig, TheExitStatusTellsHowTheRunWent) {
  SaveRun("2");
  const auto noPort = Other();
  scale.Unplug();
  noPort->Load("LOAD RUN EXIT");
  Pass(1s);
  EXPECT_EQ(loop.ExitStatus(), 2);
  EXPECT_EQ(noPort->controls.connection.cboSerial.BackColor(), colors::red);

  scale.PlugIn();
  const auto withErrors = Other();
  withErrors->Load("LOAD RUN EXIT");
  withErrors->controls.run.chkTimeout.SetChecked(true);
  Pass(5s);
  EXPECT_EQ(loop.ExitStatus(), 1) << "stopped by time-outs";
  EXPECT_EQ(withErrors->controls.counters.lblerror.Caption(), "3");

  Answer();
  const auto lost = Other();
  lost->Load("LOAD RUN EXIT");
  lost->controls.run.Text1.SetText("100");
  loop.Outside(5ms, [&] { scale.Unplug(); });
  Pass(5s);
  EXPECT_EQ(loop.ExitStatus(), 1) << "the link was lost";
}

TEST_F(StartUpRig, KeywordsSwitchModesOn) {
  Start("x LOGPAR DIALOG sequence");
  EXPECT_TRUE(controls().display.chkLog.Checked()) << "\" LOG\" stands in \" LOGPAR\"";
  EXPECT_TRUE(controls().display.chkLogPar.Checked());
  EXPECT_TRUE(controls().receive.chkDialog.Checked());
  EXPECT_TRUE(controls().cycle.chkSequence.Checked());
  EXPECT_FALSE(Connected());
}

TEST_F(StartUpRig, RunConnectsByItself) {
  Start("RUN");
  EXPECT_TRUE(Connected());
  EXPECT_TRUE(Running());
}

TEST_F(StartUpRig, ListsComeFromTheFolder) {
  ASSERT_FALSE(WriteWholeFile(folder.Path() / "Command.txt", "READ\r\nTARE\r\n\r\n"));
  ASSERT_FALSE(WriteWholeFile(folder.Path() / "parser.TXT", "\xEF\xBB\xBFRR\xC2\xB0\n"));
  Start();
  EXPECT_EQ(controls().cycle.CBOSEND.List(), (Lines{"READ", "TARE"}));
  EXPECT_EQ(controls().receive.cboParser.List(), Lines{"RR\xB0"});
  EXPECT_EQ(frm.Caption(), "Quarlin Ver.01.01.00  Instrument test terminal");
}

TEST_F(StartUpRig, TerminatorsOfALoadedConfigurationHold) {
  controls().framing.Option3[2].SetValue(true);
  controls().framing.Combo2.SetText("003");
  controls().receive.Option4[0].SetValue(true);
  controls().cycle.CBOSEND.SetText("READ");
  controls().config.cmdSave[0].Click();
  const auto other = Other(false);
  other->Load("LOAD");
  other->controls.cycle.cmdSend.Click();
  EXPECT_EQ(scale.Written(), "READ\x03");
  scale.Receive("A\r");
  Pass(10ms);
  EXPECT_EQ(other->controls.counters.Label7.Caption(), "1");
}

TEST_F(StartUpRig, TheIntervalIsHeldInItsRange) {
  Start();
  for (const auto& [typed, shown] : std::vector<std::pair<const char*, const char*>>{
           {"250", "250"}, {"99999", "32767"}, {"-5", "0"}, {"abc", "0"}, {"1.5", "2"}}) {
    controls().run.txtInterval.SetText(typed);
    EXPECT_EQ(controls().run.txtInterval.Text(), shown);
    EXPECT_EQ(std::to_string(controls().cycle.Timer1.Interval()), shown);
  }
}

TEST_F(StartUpRig, ClosingTheWindowEndsInOrder) {
  Start();
  controls().display.chkLog.SetChecked(true);
  Connect();
  scale.Receive("last words");
  Pass(5ms);
  frm.Unload();
  Pass(0ms);
  EXPECT_EQ(loop.ExitStatus(), 0);
  EXPECT_EQ(FileText("LOG.TXT"), "last words");
  EXPECT_FALSE(scale.IsOpen());
  EXPECT_EQ(controls().run.Command1.Caption(), "Stop");
}

TEST_F(StartUpRig, TheEndDoesNotWaitForABlockedWriteOrAnOpenBox) {
  Start();
  controls().cycle.CBOSEND.SetText(std::string(1000, 'x'));
  Connect();
  scale.BlockWrites();
  loop.Outside(100ms, [&] { frm.Unload(); });
  const Instant start = loop.Now();
  controls().cycle.cmdSend.Click();
  Pass(0ms);
  EXPECT_EQ(loop.ExitStatus(), 0);
  EXPECT_LT(loop.Now() - start, 1s);
  EXPECT_TRUE(prompts.dismissed);
}

TEST_F(StartUpRig, AFullDiskIsToldOnceAndDoesNotStopTheRun) {
  std::filesystem::create_directory(folder.Path() / "LOG.TXT");  // nothing can be written there
  const auto other = Other(false);
  other->Load("x LOG");
  other->controls.connection.cmdOpen.Click();
  scale.Receive("A\r\n");
  Pass(3s);
  EXPECT_EQ(other->controls.counters.Label7.Caption(), "1");
  EXPECT_NE(other->controls.status.lblStatusNote.Caption().find("LOG.TXT cannot be written"),
            std::string::npos);
}

TEST_F(StartUpRig, SearchListsWhatOpensAndLeavesTheLinkClosed) {
  ports.AddPort("COM12");
  Start();
  Connect();
  controls().connection.cmdsearchcom.Click();
  EXPECT_FALSE(Connected());
  const Lines& list = controls().connection.cboSerial.List();
  ASSERT_GE(list.size(), 3U);
  EXPECT_EQ((Lines{list[0], list[1], list[2]}), (Lines{"NET", "COM1", "COM12"}));
  EXPECT_EQ(controls().connection.cboSerial.Text(), "NET");
  EXPECT_TRUE(controls().connection.Frame1.Enabled());
}

}  // namespace
}  // namespace quarlin
