// SPDX-License-Identifier: GPL-3.0-or-later
// Modem lines, the port search and a link that goes away and comes back.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class LinkLifetimeRig : public FrmMainRig {
 protected:
  LinkLifetimeRig() { Start(); }
  Color Lamp(std::size_t index) { return controls().modem.shpLine[index].FillColor(); }
  std::size_t Sets(OutputLine line) {
    return static_cast<std::size_t>(std::count_if(scale.LineSettings().begin(), scale.LineSettings().end(),
                                                  [&](const auto& set) { return set.line == line; }));
  }
  void AskEvery100ms() {
    controls().cycle.CBOSEND.SetText("READ");
    controls().run.HScroll1.SetValue(100);
    controls().run.Check1.SetChecked(true);
    scale.AnswerLines(
        '\n', [](std::string_view) { return "OK\r\n"; }, 5ms);
    Connect();
    StartCycle();
  }
};

TEST_F(LinkLifetimeRig, LampsFollowTheLinesAndGoDarkAtADisconnect) {
  scale.SetModemLines(cts | ring);
  Connect();
  Pass(10ms);
  EXPECT_EQ((std::vector<Color>{Lamp(0), Lamp(1), Lamp(2), Lamp(3)}),
            (std::vector<Color>{colors::green, colors::darkGreen, colors::green, colors::darkGreen}));
  scale.SetModemLines(cts);
  Pass(10ms);
  EXPECT_EQ(Lamp(2), colors::darkGreen);
  Connect();
  EXPECT_EQ(Lamp(0), colors::darkGreen);
}

TEST_F(LinkLifetimeRig, OutputsAreRaisedAtTheOpeningAndSetOnlyWhenTheyDiffer) {
  Connect();
  Pass(10s);
  EXPECT_TRUE(scale.Line(OutputLine::Dtr));
  EXPECT_TRUE(scale.Line(OutputLine::Rts));
  EXPECT_EQ(Sets(OutputLine::Dtr), 1U);
  controls().modem.chkLine[1].SetChecked(false);
  controls().modem.chkLine[0].SetValue(2);
  Pass(10ms);
  EXPECT_FALSE(scale.Line(OutputLine::Dtr));
  EXPECT_TRUE(scale.Line(OutputLine::Break));
}

TEST_F(LinkLifetimeRig, TheRtsBoxOverridesRtsTxAtEveryTick) {
  controls().link.ChkRtsTx.SetChecked(true);
  controls().cycle.CBOSEND.SetText("READ");
  Connect();
  Pass(10ms);
  controls().cycle.cmdSend.Click();
  EXPECT_FALSE(scale.Line(OutputLine::Rts)) << "dropped behind the write";
  Pass(10ms);
  EXPECT_TRUE(scale.Line(OutputLine::Rts)) << "raised again by its box";
  controls().modem.chkLine[2].SetChecked(false);
  Pass(10ms);
  EXPECT_FALSE(scale.Line(OutputLine::Rts));
}

TEST_F(LinkLifetimeRig, ALinkWithoutLinesSaysSoOnceAndRests) {
  scale.Fail(DeviceCall::Modem, std::errc::inappropriate_io_control_operation);
  Connect();
  Pass(1s);
  const int before = loop.Turns();
  Pass(1h);
  EXPECT_LE(loop.Turns() - before, 5);
  EXPECT_EQ(controls().modem.shpLine[0].ToolTipText(), "CTS: not available on this link");
  EXPECT_EQ(Note(), "") << "the status bar passes over it";
}

TEST_F(LinkLifetimeRig, ALostLinkIsWaitedForAndTheCycleGoesOn) {
  controls().connection.chkReconnect.SetChecked(true);
  AskEvery100ms();
  Pass(1s);
  scale.Unplug();
  Pass(1600ms);
  EXPECT_TRUE(Running());
  EXPECT_EQ(controls().status.lblStatusLink.Caption(), "waiting for COM1 9600,n,8,1, next try in 2 s");
  const std::string sent = controls().counters.lblsend.Caption();
  scale.PlugIn();
  Pass(10s);
  EXPECT_EQ(controls().connection.lblReconnects.Caption(), "1");
  EXPECT_NE(controls().counters.lblsend.Caption(), sent);
  ASSERT_EQ(ErrorList().size(), 1U) << "one line for the outage";
  EXPECT_NE(ErrorList()[0].find("COM1 9600,n,8,1 has gone"), std::string::npos);
  EXPECT_EQ(controls().connection.cboSerial.BackColor(), colors::green);
}

TEST_F(LinkLifetimeRig, WhatCameBeforeALossIsKeptAndHalfAStringIsNoBeginning) {
  const std::string half = std::string(100'000, 'x') + "12.";
  controls().display.chkLog.SetChecked(true);
  for (const bool reconnect : {false, true}) {
    Connect();
    controls().connection.chkReconnect.SetChecked(reconnect);
    scale.Receive(half);
    scale.Unplug();
    controls().cycle.cmdSend.Click();  // notices it first
    Pass(100ms);
    EXPECT_TRUE(FileText("LOG.TXT").ends_with(half)) << "reconnect " << reconnect;
    scale.PlugIn();
  }
  Pass(1s);
  scale.Receive("12.6 kg\r\n");
  Pass(100ms);
  EXPECT_EQ(controls().counters.lbllen.Caption(), "9");
}

TEST_F(LinkLifetimeRig, WaitingForALinkTakesGrowingPausesAndCanBeGivenUp) {
  controls().connection.chkReconnect.SetChecked(true);
  AskEvery100ms();
  Pass(1s);
  scale.Unplug();
  const std::size_t before = ports.Tried().size();
  Pass(61s);
  EXPECT_EQ(ports.Tried().size() - before, 9U) << "after 0.5, 1, 2, 4, 8, 10, 10, 10 and 10 s";
  Connect();  // reads Disconnect
  EXPECT_FALSE(Running());
  scale.PlugIn();
  Pass(1min);
  EXPECT_FALSE(scale.IsOpen());
}

TEST_F(LinkLifetimeRig, WhatArrivesWhileAWriteWaitsIsShownAtOnceAndHandledAfterwards) {
  controls().cycle.CBOSEND.SetText("READ");
  Connect();
  scale.BlockWrites(2);
  Lines meanwhile;
  std::string handled;
  scale.ReceiveAfter(10ms, "12.5 kg\r\n");
  loop.Outside(20ms, [&] {
    meanwhile = Shown();
    handled = controls().counters.Label7.Caption();
    EXPECT_EQ(controls().status.lblStatusCycle.Caption(), "sending: 2 of 6 bytes, waiting for the driver");
    scale.UnblockWrites();
  });
  controls().cycle.cmdSend.Click();
  Pass(100ms);
  EXPECT_EQ(meanwhile, Lines{"12.5 kg"});
  EXPECT_EQ(handled, "0") << "not before its request stands in the log";
  EXPECT_EQ(Shown(), (Lines{"12.5 kg", "READ"}));
  EXPECT_EQ(controls().counters.Label7.Caption(), "1");
}

TEST_F(LinkLifetimeRig, ASearchCanBeStopped) {
  for (int i = 1; i <= 99; ++i) {
    if (i > 1) ports.AddPort("COM" + std::to_string(i));
  }
  loop.Outside(0ms, [&] { controls().connection.cmdsearchcom.Click(); });
  controls().connection.cmdsearchcom.Click();
  EXPECT_EQ(controls().connection.cboSerial.List(), (Lines{"NET", "COM1"}));
  EXPECT_EQ(controls().connection.cmdsearchcom.Caption(), "Search");
  EXPECT_NE(Note().find("1 port found before the search was stopped"), std::string::npos);
}

}  // namespace
}  // namespace quarlin
