// SPDX-License-Identifier: GPL-3.0-or-later
// The request/answer run from the window's side: buttons pressed, an instrument that answers, and what
// the counters, the display and the wire show.

#include <gtest/gtest.h>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Lines = std::vector<std::string>;

class CycleRig : public FrmMainRig {
 protected:
  CycleRig() {
    Start();
    Command("READ");
    Interval(100);
  }
  void Command(std::string_view text) { controls().cycle.CBOSEND.SetText(text); }
  void Interval(int milliseconds) { controls().run.HScroll1.SetValue(milliseconds); }
  void WaitAnswer(int timeOut = 0) {
    controls().run.Check1.SetChecked(true);
    controls().run.txtAnswerTime.SetText(std::to_string(timeOut));
  }
  void Requests(std::string_view count) {
    controls().run.Check2.SetChecked(true);
    controls().run.Text1.SetText("");  // typed anew: a 0 that stood there is no longer what a run has left
    controls().run.Text1.SetText(count);
  }
  void Answer(const std::string& answer, Duration after = 5ms) {
    scale.AnswerLines(
        '\n', [answer](std::string_view) { return answer; }, after);
  }
  void Go() {
    Connect();
    StartCycle();
  }
  std::string Sent() { return controls().counters.lblsend.Caption(); }
  std::string Answers() { return controls().counters.Label7.Caption(); }
  std::string Errors() { return controls().counters.lblerror.Caption(); }
};

TEST_F(CycleRig, SendsOncePerIntervalWithoutWaiting) {
  Go();
  Pass(1s);
  EXPECT_EQ(Sent(), "10");
  EXPECT_EQ(scale.Written().substr(0, 12), "READ\r\nREAD\r\n");
  StartCycle();
  Pass(1s);
  EXPECT_EQ(Sent(), "10") << "a stopped cycle sends nothing";
}

TEST_F(CycleRig, WaitAnswerSendsOneStringUntilTheAnswerHasCome) {
  WaitAnswer();
  Go();
  Pass(10s);
  EXPECT_EQ(Sent(), "1");
  EXPECT_EQ(controls().status.lblStatusCycle.Caption(), "waiting for an answer, 9 s");
  scale.Receive("12.5 kg\r\n");
  Pass(1s);
  EXPECT_EQ(Sent(), "2");
  EXPECT_EQ(Answers(), "1");
  EXPECT_EQ(controls().counters.lbllen.Caption(), "9");
}

TEST_F(CycleRig, ALateAnswerKeepsTheSendsOnTheGrid) {
  WaitAnswer();
  Answer("OK\r\n", 130ms);
  Go();
  Pass(1050ms);
  ASSERT_EQ(scale.Writes().size(), 5U) << "at 100, 300, 500, 700 and 900 ms";
  EXPECT_EQ(scale.Writes()[1].at - scale.Writes()[0].at, 200ms);
}

TEST_F(CycleRig, IntervalZeroGoesAsFastAsTheAnswers) {
  WaitAnswer();
  Interval(0);
  Answer("OK\r\n", 10us);
  Go();
  Pass(1s);
  EXPECT_GT(controls().counters.Label7.Integer(), 90'000);
  EXPECT_EQ(Errors(), "0");
}

TEST_F(CycleRig, ARestingProgramTakesNoTurns) {
  scale.Fail(DeviceCall::Modem, std::errc::inappropriate_io_control_operation);  // else they are looked at
  WaitAnswer();
  Connect();
  Pass(10s);
  const int before = loop.Turns();
  Pass(1h);
  EXPECT_LE(loop.Turns() - before, 5);
}

struct RunEndCase {
  const char* name;
  bool waits;
  const char* requests;
  const char* sent;
};

TEST_F(CycleRig, ALimitedRunEndsByItself) {
  const std::vector<RunEndCase> cases{
      {"waiting", true, "7", "7"},       {"not waiting", false, "7", "7"},
      {"none, waiting", true, "0", "0"}, {"none, not waiting", false, "0", "0"},
      {"negative", false, "-3", "0"},    {"no number", true, "abc", "0"},
  };
  Answer("OK\r\n");
  Connect();
  for (const RunEndCase& row : cases) {
    SCOPED_TRACE(row.name);
    controls().run.Check1.SetChecked(row.waits);
    Requests(row.requests);
    StartCycle();
    EXPECT_TRUE(Running());
    Pass(5s);
    EXPECT_FALSE(Running());
    EXPECT_EQ(Sent(), row.sent);
    EXPECT_TRUE(Connected());
  }
}

TEST_F(CycleRig, BoxesOfTheRunAreOffLimitsWhileItRuns) {
  Go();
  for (const Control* control : std::initializer_list<const Control*>{
           &controls().run.Check1, &controls().run.Check2, &controls().run.Text1, &controls().run.chkTimeout,
           &controls().run.chkRequest, &controls().run.txtTimeout}) {
    EXPECT_FALSE(control->Enabled()) << control->Name();
  }
  EXPECT_EQ(controls().run.Command1.Caption(), "&Stop");
  Connect();  // the button now disconnects
  EXPECT_FALSE(Running());
  EXPECT_TRUE(controls().run.Check1.Enabled());
}

TEST_F(CycleRig, TimeOutsAreCountedListedAndStopTheCycle) {
  WaitAnswer(50);
  controls().run.chkTimeout.SetChecked(true);
  controls().run.txtTimeout.SetText("3");
  Go();
  Pass(5s);
  EXPECT_FALSE(Running());
  EXPECT_EQ(ErrorList(), (Lines{"TIME OUT (1/3)", "TIME OUT (2/3)", "TIME OUT (3/3)"}));
  EXPECT_EQ(Sent(), "3");
  EXPECT_EQ(Errors(), "3");
  EXPECT_EQ(controls().link.lblRxms.Caption(), "- -");
  EXPECT_TRUE(Connected()) << "time-outs stop the cycle, not the link";
}

TEST_F(CycleRig, ATimeOutSaysWhatCame) {
  WaitAnswer(50);
  Answer("12.5 k");
  Go();
  Pass(160ms);
  ASSERT_EQ(ErrorList(), Lines{"TIME OUT"});
  EXPECT_NE(controls().display.lstError.List()[0].toolTip.find("6 bytes without terminator"),
            std::string::npos);
  EXPECT_EQ(controls().counters.lblllen.Caption(), "6");
  scale.StopAnswering();
  Pass(100ms);
  EXPECT_EQ(Note(), "time-out: nothing received");
}

TEST_F(CycleRig, AnAnswerAtTheDeadlineIsAnAnswer) {
  WaitAnswer(50);
  Answer("OK\r\n", 50ms);
  Go();
  Pass(1s);
  EXPECT_EQ(Errors(), "0");
  EXPECT_EQ(Sent(), "10");
}

TEST_F(CycleRig, ALateAnswerIsAnAnswerAndSaidToBeLate) {
  WaitAnswer(50);
  Interval(500);
  Answer("OK\r\n", 80ms);
  Go();
  Pass(700ms);
  EXPECT_EQ(Errors(), "1");
  EXPECT_EQ(Answers(), "1");
  EXPECT_EQ(Note(), "late answer");
}

TEST_F(CycleRig, SendOnRequestWaitsForOneEachTime) {
  controls().run.chkRequest.SetChecked(true);
  Go();
  Pass(1s);
  EXPECT_EQ(Sent(), "0");
  EXPECT_EQ(controls().status.lblStatusCycle.Caption(), "waiting for a request");
  for (const char* sent : {"1", "2"}) {
    scale.Receive("GO\r\n");
    Pass(1s);
    EXPECT_EQ(Sent(), sent);
  }
}

struct FrameCase {
  std::size_t option;
  const char* combo2;
  bool init;
  const char* combo4;
  const char* initString;
  std::string wire;
};

TEST_F(CycleRig, FramesTheString) {
  const std::vector<FrameCase> cases{
      {0, "000", false, "000", "", "READ\r"},
      {1, "000", false, "000", "", "READ\r\n"},
      {2, "000", false, "000", "", "READ"},
      {2, "013", false, "000", "", "READ\r"},
      {2, "abc", false, "000", "", "READ\0"s},
      {2, "999", false, "000", "", "READ"},
      {0, "000", true, "002", "ignored", "\x02READ\r"},
      {0, "000", true, "000", "{1B}@", "\x1B@READ\r"},
      {0, "000", true, "300", "x", "READ\r"},
  };
  Connect();
  for (const FrameCase& row : cases) {
    SCOPED_TRACE(std::string(row.combo2) + " " + row.combo4);
    controls().framing.Option3[row.option].SetValue(true);
    controls().framing.Combo2.SetText(row.combo2);
    controls().framing.chkInit.SetChecked(row.init);
    controls().framing.Combo4.SetText(row.combo4);
    controls().framing.txtinitstr.SetText(row.initString);
    scale.ForgetWritten();
    controls().cycle.cmdSend.Click();
    EXPECT_EQ(scale.Written(), row.wire);
  }
}

TEST_F(CycleRig, CounterStopSendsUpToTheMaximumAndDisconnects) {
  Command("W[COUNTER]");
  controls().macro.txtmin.SetText("8");
  controls().macro.txtMax.SetText("10");
  controls().macro.txtcfr.SetText("2");
  controls().macro.chkStopCounter.SetChecked(true);
  Go();
  Pass(2s);
  EXPECT_EQ(scale.Written(), "W08\r\nW09\r\nW10\r\n");
  EXPECT_EQ(prompts.shown, Lines{"STOP CYCLE: COUNTER STOP"});
  EXPECT_FALSE(Connected());
  EXPECT_FALSE(Running());
}

TEST_F(CycleRig, SendKeepsToTheCounterStopAndLeavesNothingBehind) {
  Command("W[COUNTER]");
  controls().macro.txtMax.SetText("-1");
  controls().macro.chkStopCounter.SetChecked(true);
  Connect();
  controls().cycle.cmdSend.Click();
  EXPECT_EQ(scale.Written(), "");
  Command("PLAIN");
  StartCycle();
  Pass(150ms);
  EXPECT_EQ(scale.Written(), "PLAIN\r\n");
  EXPECT_TRUE(Connected());
}

TEST_F(CycleRig, ASequenceWithoutAFileCountsLikeTheCommandBox) {
  Command("[COUNTER]");
  controls().cycle.chkSequence.SetChecked(true);
  Go();
  Pass(250ms);
  EXPECT_EQ(scale.Written(), "000\r\n001\r\n");
}

TEST_F(CycleRig, TheLogHasTheOrderOfTheWire) {
  controls().display.chkLog.SetChecked(true);
  scale.BlockWrites();
  Go();
  loop.Outside(200ms, [&] {
    Command("SN");
    controls().cycle.cmdSend.Click();
  });
  loop.Outside(300ms, [&] { scale.UnblockWrites(); });
  Pass(350ms);
  StartCycle();
  EXPECT_EQ(FileText("LOG.TXT"), scale.Written());
  EXPECT_EQ(scale.Written().substr(0, 10), "READ\r\nSN\r\n");
}

TEST_F(CycleRig, SequenceTakesTheLinesInTurnAndCountsOncePerRound) {
  ASSERT_FALSE(WriteWholeFile(folder.Path() / "SEQUENCE.txt", "A[COUNTER]\r\nB[COUNTER]\n\nC"));
  FrmMain other{{loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }}};
  other.Load("SEQUENCE");
  other.controls.macro.txtcfr.SetText("1");
  other.controls.run.HScroll1.SetValue(100);
  other.controls.connection.cmdOpen.Click();
  other.controls.run.Command1.Click();
  Pass(750ms);
  EXPECT_EQ(scale.Written(), "A0\r\nB1\r\nC\r\nA1\r\nB2\r\nC\r\nA2\r\n");
  EXPECT_EQ(other.controls.cycle.CBOSEND.Text(), "A[COUNTER]");
}

TEST_F(CycleRig, AStopWhileTheWriteWaitsLeavesNobodyWaiting) {
  WaitAnswer(50);
  scale.BlockWrites();
  Go();
  loop.Outside(200ms, [&] { StartCycle(); });  // the user presses Stop
  loop.Outside(300ms, [&] { scale.UnblockWrites(); });
  Pass(10s);
  EXPECT_FALSE(Running());
  EXPECT_EQ(scale.Written(), "READ\r\n") << "what was begun is finished";
  EXPECT_EQ(Errors(), "0");
}

TEST_F(CycleRig, ElapsedTimeAndRateAreShown) {
  WaitAnswer();
  Answer("OK\r\n");
  Go();
  Pass(90s);
  EXPECT_EQ(controls().counters.lbltempo.Caption(), "00:01:30");
  EXPECT_EQ(controls().counters.lblSendperSecond.Caption(), "10");
  StartCycle();
  Pass(5s);
  EXPECT_EQ(controls().counters.lbltempo.Caption(), "00:01:30");
  EXPECT_EQ(controls().counters.lblSendperSecond.Caption(), "0");
}

TEST_F(CycleRig, ALostDeviceIsNoticedOnceAndNeverSpins) {
  WaitAnswer(50);
  Answer("OK\r\n");
  Go();
  Pass(1s);
  scale.Unplug();
  const int before = loop.Turns();
  Pass(1h);
  EXPECT_FALSE(Connected());
  EXPECT_FALSE(Running());
  EXPECT_EQ(controls().connection.cboSerial.BackColor(), colors::red);
  EXPECT_NE(Note().find("COM1 9600,n,8,1 has gone"), std::string::npos) << Note();
  EXPECT_LE(loop.Turns() - before, 20);
  EXPECT_TRUE(prompts.shown.empty());
}

}  // namespace
}  // namespace quarlin
