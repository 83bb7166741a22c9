// SPDX-License-Identifier: GPL-3.0-or-later
// The cycle by itself: when it sends, what it asks before, and what ends it. The receive side is played by
// the test.

#include "transmit/cycle.h"

#include "support/sender_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class CycleRoom : public SenderRig {
 protected:
  CycleRoom() {
    exchange.Hooks.waitEnded = [this] { cycle.MaySendAgain(); };
    link.Hooks.transmitted = [this] { exchange.TextSent(); };
    link.Hooks.free = [this] { cycle.MaySendAgain(); };
    cycle.Hooks.stopped = [this](RunEnd end) { ends.push_back(end); };
    controls.CBOSEND.SetText("READ");
    run.HScroll1.SetValue(100);
  }

  void Start() { run.Command1.Click(); }
  void Answer() {
    exchange.BeginString("OK\r\n", loop.Now());
    exchange.Accept("OK\r\n");
    exchange.EndString();
  }
  std::size_t Sends() const { return port.Writes().size(); }

  CycleControls controls{loop};
  IntervalStatistics intervals{loop, linkControls};
  Sequence sequence{controls, ProgramFolder(folder.Path())};
  Cycle cycle{{loop, controls, run, macro, counters, link, expander, exchange, intervals, sender, traffic,
               sequence, status}};
  std::vector<RunEnd> ends;
};

// A string that the driver has not taken yet is not overtaken, and its answer is not timed before it has
// left.
TEST_F(CycleRoom, WaitsForALinkThatIsBusyAndCountsTheTimeFromTheEndOfTheSend) {
  run.Check1.SetChecked(true);
  run.txtAnswerTime.SetText("50");
  bool reported = false;
  exchange.Hooks.reportTimeOut = [&] { reported = true; };
  Start();
  port.BlockWrites();
  loop.Outside(1s, [&] { port.UnblockWrites(); });
  loop.Pass(1s + 40ms);
  EXPECT_EQ(Sends(), 1U);
  EXPECT_FALSE(reported);
  loop.Pass(20ms);
  EXPECT_TRUE(reported);
}

TEST_F(CycleRoom, ASendThatFailsIsFollowedByTheNextOneAtItsTick) {
  run.Check1.SetChecked(true);
  port.Fail(DeviceCall::Write, std::errc::invalid_argument, 2);
  Start();
  loop.Pass(350ms);
  EXPECT_EQ(counters.lblsend.Caption(), "3");
  EXPECT_EQ(counters.lblNotSent.Caption(), "2");
  EXPECT_TRUE(exchange.MustWait()) << "for the answer to the one that left";
}

TEST_F(CycleRoom, WithoutAPauseOfItsOwnAFailingRunIsHeldBack) {
  run.HScroll1.SetValue(0);
  port.Fail(DeviceCall::Write, std::errc::invalid_argument);
  Start();
  loop.Pass(1s);
  EXPECT_GE(counters.lblNotSent.Integer(), 9);
  EXPECT_LE(counters.lblNotSent.Integer(), 11);
}

TEST_F(CycleRoom, ARequestThatCameBeforeTheRunIsAnsweredByIt) {
  run.chkRequest.SetChecked(true);
  Answer();
  Start();
  loop.Pass(1s);
  EXPECT_EQ(Sends(), 1U);
}

struct LimitRow {
  const char* text;
  std::size_t sends;
  const char* note;
};

TEST_F(CycleRoom, ALimitedRunEndsWhenNothingIsLeftAndSaysSoWhenNothingWas) {
  run.Check2.SetChecked(true);
  for (const LimitRow& row :
       std::vector<LimitRow>{{"2", 2, ""}, {"0", 0, "no requests left"}, {"-1", 0, "no requests left"}}) {
    SCOPED_TRACE(row.text);
    run.Text1.SetText("");
    run.Text1.SetText(row.text);
    const std::size_t before = Sends();
    ends.clear();
    status.Clear();
    Start();
    loop.Pass(1s);
    EXPECT_EQ(Sends() - before, row.sends);
    EXPECT_EQ(ends, std::vector<RunEnd>{RunEnd::Completed});
    EXPECT_EQ(statusControls.lblStatusNote.Caption(), row.note);
  }
}

TEST_F(CycleRoom, TheSendButtonSendsTheCommandBoxWhateverTheSequenceHolds) {
  ASSERT_FALSE(WriteWholeFile(folder / "sequence.txt", "A\nB\n"));
  controls.chkSequence.SetChecked(true);
  Start();
  loop.Pass(150ms);
  controls.CBOSEND.SetText("BY HAND");
  controls.cmdSend.Click();
  loop.Pass(100ms);
  EXPECT_EQ(port.Written(), "A\r\nBY HAND\r\nB\r\n") << "and the sequence goes on where it was";
}

}  // namespace
}  // namespace quarlin
