// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of received text: terminators, checks, counters, parser, logs, lamps.

#include <gtest/gtest.h>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Lines = std::vector<std::string>;

constexpr std::size_t chunkSize = std::size_t{64} * 1024;

class ReceiveRig : public FrmMainRig {
 protected:
  ReceiveRig() {
    Start();
    Connect();
  }
  void Receive(std::string_view bytes) {
    scale.Receive(bytes);
    Pass(20ms);
  }
  void Terminator(std::size_t option, std::string_view combo3 = "000") {
    controls().receive.Combo3.SetText(combo3);
    controls().receive.Option4[option].SetValue(true);
  }
  std::string Answers() { return controls().counters.Label7.Caption(); }
  std::string Errors() { return controls().counters.lblerror.Caption(); }
  std::string Last() { return controls().receive.txtparser.Text(); }
};

struct TerminatorCase {
  std::size_t option;
  const char* combo3;
  std::vector<std::string> arrivals;
  const char* answers;
  std::string last;
};

TEST_F(ReceiveRig, AStringIsCompleteByItsTerminator) {
  const std::vector<TerminatorCase> cases{
      {1, "000", {"12.5 kg\r\n0"}, "1", "12.5 kg\r\n0"},  // what follows in the same arrival belongs to it
      {1, "000", {"12.5", " kg\r", "\n"}, "1", "12.5 kg\r\n"},
      {0, "000", {"A\r\n"}, "1", "A\r\n"},
      {2, "003", {"\x02W", "12\x03"}, "1", "\x02W12\x03"},
      {2, "000", {"x"}, "1", "x"},
      {3, "000", {"x", "y"}, "2", "y"},
      {3, "010", {"1234", "56789012"}, "1", "123456789012"},
      {3, "abc", {"x"}, "1", "x"},
      {2, "300", {"x,"}, "1", "x,"},
      {1, "000", {"\0\xFF\r\n"s}, "1", "\0\xFF\r\n"s},
  };
  for (const TerminatorCase& row : cases) {
    SCOPED_TRACE(row.last);
    controls().counters.Label7.SetInteger(0);
    Terminator(row.option, row.combo3);
    for (const std::string& arrival : row.arrivals) Receive(arrival);
    EXPECT_EQ(Answers(), row.answers);
    EXPECT_EQ(Last(), row.last);
  }
}

TEST_F(ReceiveRig, TheTerminatorsLastCodeIsShown) {
  for (const auto& [option, combo3, shown] : std::vector<std::tuple<std::size_t, const char*, const char*>>{
           {0, "000", "013"}, {1, "000", "010"}, {2, "003", "003"}}) {
    Terminator(option, combo3);
    EXPECT_EQ(controls().link.txtterm.Text(), shown);
  }
}

TEST_F(ReceiveRig, AChangeOfTheTerminatorThrowsTheBeginningAway) {
  Receive("12.");
  Terminator(0);
  Receive("5\r");
  EXPECT_EQ(Last(), "5\r");
}

TEST_F(ReceiveRig, AnErrAnswerIsCountedOnceAndThrownAway) {
  controls().receive.txtlenrx.SetText("4");
  Receive("xERRx");
  Pass(50ms);
  EXPECT_EQ(Errors(), "1");
  EXPECT_EQ(Answers(), "0");
  Receive("ERR 05\r\n");
  EXPECT_EQ(Errors(), "2");
  EXPECT_EQ(controls().counters.lblErrorLen.Caption(), "0");
}

TEST_F(ReceiveRig, WrongLengthAndDifferentTextAreErrors) {
  controls().receive.txtlenrx.SetText("8");
  Receive("1234567\r\n");
  EXPECT_EQ(controls().counters.lblErrorLen.Caption(), "1");
  EXPECT_EQ(Answers(), "0");
  EXPECT_EQ(controls().counters.lblllen.Caption(), "9");
  controls().receive.txtlenrx.SetText("no number");
  controls().receive.chkSame.SetChecked(true);
  controls().receive.txtparser.SetText("OK\r\n");
  Receive("OK\r\n");
  Receive("Ok\r\n");
  EXPECT_EQ(Answers(), "1");
  EXPECT_EQ(controls().counters.lblErrStr.Caption(), "1");
  EXPECT_EQ(ErrorList(), (Lines{"ERROR STRING LENGTH", "STRING NOT EQUAL"}));
  EXPECT_EQ(Errors(), "2");
}

struct ChecksumCase {
  const char* style;
  std::string answer;
  bool matches;
};

TEST_F(ReceiveRig, TheChecksumOfAnAnswerIsVerified) {
  const std::vector<ChecksumCase> cases{
      {"None", "READxx\r\n", true},
      {"Sysway", "READ12\r\n", true},
      {"Sysway", "READ13\r\n", false},
      {"Motorola", "S1130000285F245F2212226A000424290008237C2A\r\n", true},
      {"Motorola", "S1130000285F245F2212226A000424290008237C2B\r\n", false},
      {"LRC", "WREC,0,0000,123456,35\r\n", true},
      {"LRC raw", "READ\x92\r\n", true},
      {"LRC raw", "READ\x93\r\n", false},
      {"Mod8", "READ\x1C\r\n", false},  // one raw character is never two
      {"Sysway", "1\r\n", true},        // too short to be verified
      {"CRC16MODBUS", "1234567894B37\r\n", true},
      {"CRC16MODBUS", "1234567894B38\r\n", false},
      {"CRC16MODBUS", "4B37\r\n", true},  // one character short of being verified
      {"CRC16MODBUS", "14B37\r\n", false},
      {"CRC8", "123456789F4\r\n", true},
      {"CRC32", "123456789CBF43926\r\n", true},
      {"CRC32", "1234567892CBF43926\r\n", false},
      {"2C", "12345678923\r\n", true},
  };
  for (const ChecksumCase& row : cases) {
    SCOPED_TRACE(row.style + (": " + row.answer));
    controls().counters.lblErrorLen.SetInteger(0);
    controls().counters.Label7.SetInteger(0);
    controls().receive.cboCheckSum.SetText(row.style);
    Receive(row.answer);
    EXPECT_EQ(controls().counters.lblErrorLen.Caption(), row.matches ? "0" : "1");
    EXPECT_EQ(Answers(), "1") << "an answer with a wrong checksum is an answer";
  }
}

TEST_F(ReceiveRig, TheParserRewritesLogsAndIsVerified) {
  controls().display.chkLogPar.SetChecked(true);
  Receive("ab\r\n");
  controls().receive.cboParser.SetText("EE,");
  controls().receive.chkParser.SetChecked(true);
  Receive("AB\r\n");
  EXPECT_EQ(Last(), "4142,");
  controls().display.chkLogPar.SetChecked(false);
  EXPECT_EQ(FileText("LOGPAR.TXT"), "ab\r\n4142,");
}

TEST_F(ReceiveRig, StopIfFoundDisconnectsAndTellsWhy) {
  controls().receive.txtConv[2].SetText("{02}ALARM");
  Receive(
      "\x02"
      "ALARM\r\n");
  EXPECT_TRUE(prompts.shown.empty()) << "not checked";
  controls().receive.chkStopif[1].SetChecked(true);
  prompts.whileShown = [this] { EXPECT_FALSE(Connected()) << "disconnected before the user sees it"; };
  Receive(
      "\x02"
      "ALARM\r\n");
  EXPECT_EQ(prompts.shown, Lines{"SEARCH STRING: STRING FOUND"});
  EXPECT_EQ(Answers(), "2");
}

TEST_F(ReceiveRig, StopOnErrorShowsTheKind) {
  controls().test.chkStop.SetChecked(true);
  controls().receive.txtlenrx.SetText("3");
  Receive("12345\r\n");
  EXPECT_EQ(prompts.shown, Lines{"ERROR STRING: STRING LENGTH NOT EQUAL"});
  EXPECT_FALSE(Connected());
}

TEST_F(ReceiveRig, StampsDifferencesAndAppendedRows) {
  controls().display.chkLog.SetChecked(true);
  controls().run.chkhhmmss.SetChecked(true);
  controls().receive.chkTimerDiff.SetChecked(true);
  controls().receive.ChkCrLfAppRx.SetChecked(true);
  Receive("A\r\n");
  Receive("B\r\n");  // 20 ms later: no pause
  Pass(2s);
  Receive("C\r\n");
  controls().display.chkLog.SetChecked(false);
  EXPECT_EQ(FileText("LOG.TXT"),
            "-->21/11/26 10:00:00\r\nA\r\n\r\nB\r\n\r\n-->21/11/26 10:00:02\r\nC\r\n\r\n");
  EXPECT_EQ(Shown(), (Lines{"A", "TIME :36000", "", "B", "TIME :0.02", "", "C", "TIME :2.02", ""}));
  EXPECT_EQ(controls().counters.lblrxpersecond.Caption(), "2.02");
}

TEST_F(ReceiveRig, RxOnlyHoldsEverythingUntilItIsCleared) {
  controls().link.chkLogOnly.SetChecked(true);
  Receive("12.5\r\n");
  EXPECT_EQ(Answers(), "0");
  EXPECT_TRUE(Shown().empty());
  controls().link.chkLogOnly.SetChecked(false);
  Pass(1ms);
  EXPECT_EQ(Last(), "12.5\r\n");
}

TEST_F(ReceiveRig, RxOnlyStopsTakingAtOneMebibyte) {
  controls().link.chkLogOnly.SetChecked(true);
  for (int i = 0; i < 30; ++i) Receive(std::string(chunkSize, 'x'));
  EXPECT_GT(scale.Unread(), 800'000U);
  EXPECT_NE(Note().find("1 MiB"), std::string::npos);
  controls().link.chkLogOnly.SetChecked(false);
  Pass(100ms);
  EXPECT_EQ(scale.Unread(), 0U) << "goes on where it stopped";
}

TEST_F(ReceiveRig, LinesAreNoOverrun) {
  controls().link.chkLogOnly.SetChecked(true);
  for (int i = 0; i < 16; ++i) Receive(std::string(chunkSize - 2, 'x') + "\r\n");
  controls().link.chkLogOnly.SetChecked(false);
  Pass(100ms);
  EXPECT_EQ(Note().find("without a terminator"), std::string::npos);
}

TEST_F(ReceiveRig, ATerminatorThatNeverComesIsHandedOnAtOneMebibyte) {
  controls().display.chkLog.SetChecked(true);
  std::string sent;
  for (int i = 0; i < 17; ++i) {
    sent += std::string(chunkSize, static_cast<char>('a' + i));
    Receive(std::string(chunkSize, static_cast<char>('a' + i)));
  }
  EXPECT_EQ(Answers(), "1");
  EXPECT_NE(Note().find("without a terminator"), std::string::npos);
  controls().display.chkLog.SetChecked(false);
  EXPECT_EQ(FileText("LOG.TXT"), sent);
}

// Half a string is neither carried over a Connect nor into a run, and neither is its rest.
TEST_F(ReceiveRig, NothingThatCameBeforeBelongsToARun) {
  Receive("12.");
  controls().cycle.CBOSEND.SetText("READ");
  controls().run.HScroll1.SetValue(1000);
  StartCycle();
  Receive("5 kg\r\n");
  EXPECT_EQ(Answers(), "0") << "the rest of what came before Start";
  Receive("OK\r\n");
  EXPECT_EQ(Answers(), "1");
  StartCycle();
  Receive("12.");
  Connect();
  Connect();
  Receive("7 kg\r\n");
  EXPECT_EQ(Last(), "7 kg\r\n");
}

TEST_F(ReceiveRig, WhatRxOnlyHeldBackIsTakenBeforeATimeOutIsReported) {
  controls().cycle.CBOSEND.SetText("READ");
  controls().run.Check1.SetChecked(true);
  controls().run.txtAnswerTime.SetText("100");
  StartCycle();
  Pass(510ms);
  controls().link.chkLogOnly.SetChecked(true);
  Receive("12.5 kg\r\n");
  Pass(1s);
  EXPECT_EQ(Errors(), "0") << "nobody has looked";
  controls().link.chkLogOnly.SetChecked(false);
  Pass(1ms);
  EXPECT_EQ(Answers(), "1");
  EXPECT_EQ(Errors(), "0");
}

TEST_F(ReceiveRig, LoadingTheSameTerminatorKeepsHalfAString) {
  controls().config.cmdSave[0].Click();
  Receive("12.");
  controls().config.cmdSave[1].Click();
  Receive("5 kg\r\n");
  EXPECT_EQ(Last(), "12.5 kg\r\n");
}

TEST_F(ReceiveRig, EverySearchStringThatAnAnswerHoldsIsTold) {
  for (const std::size_t i : {0U, 2U}) {
    controls().receive.txtConv[2 * i].SetText("kg");
    controls().receive.chkStopif[i].SetChecked(true);
  }
  Receive("12.5 kg\r\n");
  EXPECT_EQ(prompts.shown, (Lines{"SEARCH STRING: STRING FOUND", "SEARCH STRING: STRING FOUND"}));
  EXPECT_EQ(Answers(), "1");
}

// The end closes the box and lets no second one come up.
TEST_F(ReceiveRig, AnEndWhileABoxIsOpenIsTheEnd) {
  std::vector<std::string> complaints;
  frm.OnTrouble = [&](std::string_view line) { complaints.emplace_back(line); };
  for (const std::size_t i : {0U, 1U}) {
    controls().receive.txtConv[2 * i].SetText("kg");
    controls().receive.chkStopif[i].SetChecked(true);
  }
  prompts.whileShown = [this] { frm.Unload(EndCause::Signal); };
  Receive("12.5 kg\r\n");
  EXPECT_EQ(prompts.shown, Lines{"SEARCH STRING: STRING FOUND"});
  EXPECT_EQ(complaints, Lines{"SEARCH STRING: STRING FOUND"});
  EXPECT_TRUE(loop.ExitStatus().has_value());
}

TEST_F(ReceiveRig, LampsAreBrightForAMoment) {
  scale.Receive("A\r\n");
  Pass(1ms);
  EXPECT_EQ(controls().counters.RxLamp().FillColor(), colors::rxLamp);
  Pass(200ms);
  EXPECT_EQ(controls().counters.RxLamp().FillColor(), colors::darkGreen);
}

TEST_F(ReceiveRig, TheMeanIntervalIsShown) {
  controls().cycle.CBOSEND.SetText("READ");
  scale.AnswerLines(
      '\n', [](std::string_view) { return "OK\r\n"; }, 20ms);
  for (int i = 0; i < 3; ++i) {
    controls().cycle.cmdSend.Click();
    Pass(500ms);
  }
  EXPECT_EQ(controls().link.lblRxms.Caption(), "20");
}

TEST_F(ReceiveRig, TheReportIsWrittenAndOpened) {
  controls().receive.txtlenrx.SetText("3");
  Receive("12345\r\n");
  controls().test.cmdReport.Click();
  const std::string dashes(51, '-');
  EXPECT_EQ(FileText("Report.txt"),
            dashes + "\r\nTx :0\r\nRx :0\r\n" + dashes + "\r\nElapsed Time :00:00:00\r\n" + dashes +
                "\r\nError     : 1\r\nError Str : 0\r\nError Len : 1\r\n" + dashes +
                "\r\nLast 1 Errors:\r\n" + dashes + "\r\nERROR STRING LENGTH\r\n\r\n" + dashes +
                "\r\nErrors in detail:\r\n" + dashes +
                "\r\nERROR STRING LENGTH  21/11/26 10:00:00 No. 1: 7 characters instead of 3\r\n");
  EXPECT_EQ(opener.opened, Lines{"Report.txt"});
}

TEST_F(ReceiveRig, TheReportSumsUpTheFaultsMadeOnPurpose) {
  WriteWholeFile(folder / "Dialog.txt",
                 "[COMMAND]\nA=a\nB=b\n[FAULTS]\nA=drop every 2\nB=delay 50, double 1\n");
  controls().receive.chkDialog.SetChecked(true);
  for (const char* request : {"A\r\n", "A\r\n", "A\r\n", "A\r\n", "B\r\n"}) Receive(request);
  EXPECT_NE(frm.ReportText().find("-\r\nFaults on purpose : 2 dropped, 1 doubled, 1 delayed\r\n-"),
            std::string::npos)
      << frm.ReportText();
}

TEST_F(ReceiveRig, AFaultThatCannotBeReadIsNamedForStandardErrorToo) {
  Lines told;
  frm.OnTrouble = [&](std::string_view text) { told.emplace_back(text); };
  WriteWholeFile(folder / "Dialog.txt", "[COMMAND]\nA=a\n[FAULTS]\nA=drop often\n");
  controls().receive.chkDialog.SetChecked(true);
  Receive("A\r\n");
  EXPECT_EQ(told, Lines{"Dialog.txt: faults that cannot be read: \"A\""});
  EXPECT_EQ(Note(), told.front());
}

TEST_F(ReceiveRig, TheErrorListOpensAndCloses) {
  EXPECT_FALSE(controls().display.lstError.Visible());
  controls().test.cmdErr.Click();
  EXPECT_TRUE(controls().display.lstError.Visible());
  EXPECT_EQ(controls().test.cmdErr.Caption(), "Close");
}

}  // namespace
}  // namespace quarlin
