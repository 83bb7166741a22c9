// SPDX-License-Identifier: GPL-3.0-or-later
// What leaves, and what is made of a text that does not: on the wire, in the log, on the display, in the
// counters and in the record.

#include "support/sender_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

struct KindRow {
  SendKind kind;
  const char* log;
  Lines shown;
  const char* counted;
};

TEST_F(SenderRig, EachKindIsStampedAndCountedInItsOwnWay) {
  run.chkhhmmss.SetChecked(true);
  framing.ChkCrLfAppTx.SetChecked(true);
  const std::string stamp = "-->21/11/26 10:00:00";
  const std::vector<KindRow> rows{
      {SendKind::Cycle, "A\r\n", {stamp + " ", "A\r\n", "\r\n"}, "1"},
      {SendKind::ByHand, "A\r\n", {stamp + " ", "A\r\n", "\r\n"}, "1"},
      {SendKind::Answer, "-->21/11/26 10:00:00\r\nA\r\n", {"A\r\n", "\r\n"}, "0"},
      {SendKind::Task, "-->21/11/26 10:00:00\r\nA\r\n", {"A\r\n"}, "0"},
  };
  for (const KindRow& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.kind));
    std::filesystem::remove(folder / "LOG.TXT");
    shown.clear();
    counters.lblsend.SetInteger(0);
    sender.Send("A\r\n", row.kind);
    EXPECT_EQ(Log(), row.log);
    EXPECT_EQ(shown, row.shown);
    EXPECT_EQ(counters.lblsend.Caption(), row.counted);
  }
  EXPECT_EQ(record.Sums().requests, 2U);
}

// What the driver took is on the wire, and nothing else is shown or logged as sent.
TEST_F(SenderRig, AFailedSendShowsWhatWasTakenAndWaitsForNoAnswer) {
  exchange.BeginRun();
  port.BlockWrites(3);
  sender.Send("READ\r\n", SendKind::Cycle);
  EXPECT_EQ(Log(), "REA");
  EXPECT_EQ(port.Written(), "REA");
  EXPECT_EQ(shown.back().substr(0, 10), "NOT SENT: ");
  EXPECT_EQ(colorsShown.back(), colors::red);
  EXPECT_EQ(displayControls.lstError.ListCount(), 1);
  EXPECT_EQ(counters.lblsend.Caption(), "1") << "it was an attempt";
  EXPECT_EQ(counters.lblNotSent.Caption(), "1");
  EXPECT_FALSE(exchange.State().WaitingAnswer);
  EXPECT_EQ(record.Sums().Of(Verdict::NotSent), 1U);
  EXPECT_EQ(record.Sums().failed, 1U);
}

TEST_F(SenderRig, ATextThatIsNoRequestIsNoExchangeWhenItFails) {
  port.Fail(DeviceCall::Write, std::errc::io_error);
  sender.Send("12.5 kg\r\n", SendKind::Answer);
  EXPECT_EQ(counters.lblNotSent.Caption(), "1");
  EXPECT_EQ(record.Sums().requests, 0U);
  EXPECT_EQ(record.Sums().Of(Verdict::NotSent), 1U);
}

TEST_F(SenderRig, ADisconnectOnPurposeIsNoFailureAndLeavesAnOpenExchange) {
  exchange.BeginRun();
  port.BlockWrites();
  loop.Outside(100ms, [&] { link.CommClose(); });
  bool told = false;
  sender.Send("READ\r\n", SendKind::Cycle, [&](const SendOutcome& outcome) {
    told = true;
    EXPECT_EQ(outcome.end, SendEnd::Cancelled);
  });
  EXPECT_TRUE(told);
  EXPECT_EQ(counters.lblNotSent.Caption(), "0");
  EXPECT_EQ(record.Sums().open, 1U);
}

// Nobody wanted the rest to be lost.
TEST_F(SenderRig, ATextThatTheEndOfTheProgramCutsHasFailed) {
  port.BlockWrites(3);
  loop.Outside(100ms, [&] { link.GiveUpWaiting(); });
  sender.Send("READ\r\n", SendKind::ByHand);
  EXPECT_EQ(Log(), "REA");
  EXPECT_EQ(counters.lblNotSent.Caption(), "1");
  EXPECT_EQ(record.Sums().failed, 1U);
}

TEST_F(SenderRig, ARequestOfARunThatIsOverCountsNowhere) {
  exchange.BeginRun();
  port.BlockWrites();
  loop.Outside(50ms, [&] {
    exchange.EndRun(false);
    exchange.BeginRun();
  });
  loop.Outside(100ms, [&] { port.UnblockWrites(); });
  sender.Send("READ\r\n", SendKind::Cycle);
  EXPECT_EQ(port.Written(), "READ\r\n");
  EXPECT_EQ(counters.lblsend.Caption(), "0");
  EXPECT_EQ(record.Sums().requests, 0U);
  EXPECT_FALSE(exchange.State().WaitingAnswer);
}

}  // namespace
}  // namespace quarlin
