// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of a request: who gets an answer, what a verdict ends, what the record says of it afterwards.

#include "exchange/exchange.h"

#include <gtest/gtest.h>

#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class ExchangeRig : public testing::Test {
 protected:
  ExchangeRig() {
    exchange.Hooks.reportTimeOut = [this] {
      if (exchange.TakeTimeOut()) exchange.Fault({Verdict::TimeOut, "nothing received"});
    };
    exchange.Hooks.waitEnded = [this] { ++waitsEnded; };
  }

  void Begin(bool waits, int timeOut = 0) {
    run.Check1.SetChecked(waits);
    run.txtAnswerTime.SetText(std::to_string(timeOut));
    exchange.BeginRun();
  }
  void Ask() { exchange.RequestSent("READ\r\n", true); }

  // A string comes and passes the checks, or one of them objects.
  void Come(std::optional<Verdict> objection = std::nullopt, std::optional<Verdict> second = std::nullopt) {
    exchange.BeginString("12.5\r\n", loop.Now());
    if (objection) exchange.Fault({*objection});
    if (!objection) exchange.Accept("12.5");
    if (second) exchange.Fault({*second});
    exchange.EndString();
  }

  // "1 answered; 2 unsolicited late"
  std::string Story() const {
    std::string story;
    for (std::uint64_t number = record.FirstKept(); number <= record.LastNumber(); ++number) {
      const ExchangeRecord& entry = *record.Find(number);
      if (!story.empty()) story += "; ";
      story += std::to_string(entry.number);
      for (const Finding& finding : entry.findings) {
        story += " " + std::string(VerdictName(finding.verdict));
        if (!finding.detail.empty()) story += " " + finding.detail;
      }
      if (entry.open) story += " open";
      if (!entry.ended) story += " ...";
    }
    return story;
  }

  VirtualLoop loop;
  RunControls run{loop};
  RunRecord record{loop.Clocks()};
  Exchange exchange{loop, run, record};
  int waitsEnded = 0;
};

TEST_F(ExchangeRig, AnAnswerBelongsToTheRequestThatWaitsForIt) {
  Begin(true);
  Ask();
  EXPECT_TRUE(exchange.MustWait());
  Come();
  EXPECT_FALSE(exchange.MustWait());
  Come();
  EXPECT_EQ(Story(), "1 answered; 2 unsolicited");
  EXPECT_EQ(record.Sums().accepted, 2U);
  EXPECT_EQ(record.Sums().good, 1U);
}

TEST_F(ExchangeRig, AnAnswerAfterTheTimeIsUpIsUnsolicitedAndTheTimeOutStays) {
  Begin(true, 50);
  Ask();
  loop.Pass(60ms);
  Come();
  EXPECT_EQ(Story(), "1 time-out nothing received; 2 unsolicited late");
  Ask();
  Come();
  EXPECT_EQ(record.Sums().good, 1U) << "the next one is answered in time";
  EXPECT_EQ(record.Sums().failed, 1U);
}

TEST_F(ExchangeRig, WithoutWaitingAnAnswerBelongsToTheOldestRequest) {
  Begin(false);
  for (int i = 0; i < 3; ++i) Ask();
  Come(Verdict::WrongLength, Verdict::WrongChecksum);
  Come();
  EXPECT_EQ(Story(), "1 wrong length wrong checksum; 2 answered; 3 ...");
  exchange.EndRun(false);
  EXPECT_EQ(Story(), "1 wrong length wrong checksum; 2 answered; 3 open");
  EXPECT_EQ(record.Sums().failed, 1U) << "once, whatever befell it";
}

TEST_F(ExchangeRig, ARunThatEndsInItsLastAnswerStillGetsThatAnswersVerdicts) {
  Begin(true);
  Ask();
  exchange.BeginString("12.5\r\n", loop.Now());
  exchange.Accept("12.5");
  exchange.EndRun(true);
  exchange.Fault({Verdict::WrongChecksum, "00 received, 11 computed"});
  exchange.EndString();
  EXPECT_EQ(Story(), "1 answered wrong checksum 00 received, 11 computed");
  EXPECT_EQ(record.Sums().failed, 1U);
}

TEST_F(ExchangeRig, AnErrIsTheAnswerAndNoTimeOutFollowsWhileItsRestComes) {
  Begin(true, 50);
  Ask();
  loop.Pass(40ms);
  exchange.ErrSeen("ERR", loop.Now());
  loop.Pass(40ms);
  EXPECT_TRUE(exchange.MustWait()) << "until the rest has come";
  exchange.ErrEnded();
  EXPECT_FALSE(exchange.MustWait());
  EXPECT_EQ(Story(), "1 ERR");
}

TEST_F(ExchangeRig, TheEndOfAStrayErrDoesNotEndTheWaitOfTheNextRequest) {
  Begin(true, 50);
  exchange.ErrSeen("ERR", loop.Now());
  Ask();
  exchange.ErrEnded();
  EXPECT_TRUE(exchange.MustWait());
}

TEST_F(ExchangeRig, AStoppedRunLeavesNoDeadlineAndOneOpenExchange) {
  Begin(true, 50);
  Ask();
  exchange.EndRun(false);
  loop.Pass(1s);
  EXPECT_EQ(Story(), "1 open");
  EXPECT_FALSE(exchange.State().AnswerTimedOut);
}

TEST_F(ExchangeRig, AnErrorThatAScriptSignalsIsThatOfTheRequestInWaitingOrStandsAlone) {
  Begin(true);
  Ask();
  exchange.Fault({Verdict::NotEqual});
  exchange.Fault({Verdict::NotEqual});
  EXPECT_EQ(Story(), "1 not equal; 2 not equal");
  EXPECT_EQ(record.Sums().requests, 1U);
}

TEST_F(ExchangeRig, SendOnRequestTakesOneAnswerEachTime) {
  Begin(false);
  Come();
  EXPECT_TRUE(exchange.State().AnswerPending);
  exchange.TextSent();
  EXPECT_FALSE(exchange.State().AnswerPending);
}

struct CountRow {
  const char* typed;
  int answers;
  const char* shown;  // afterwards
  const char* saved;
  const char* again;  // what the next run begins with
};

TEST_F(ExchangeRig, ACompletedRunRemembersWhereItBegan) {
  for (const CountRow& row : std::vector<CountRow>{{"3", 3, "0", "3", "3"},
                                                   {"3", 2, "1", "1", "1"},
                                                   {"0", 0, "0", "0", "0"},
                                                   {"x", 0, "x", "x", "x"}}) {
    SCOPED_TRACE(row.typed);
    run.Text1.SetText("");
    run.Text1.SetText(row.typed);
    Begin(true);
    RequestCount& requests = exchange.Requests();
    for (int i = 0; i < row.answers; ++i) requests.TakeOne();
    exchange.EndRun(requests.RequestsLeft() <= 0);
    EXPECT_EQ(run.Text1.Text(), row.shown);
    EXPECT_EQ(requests.TextToSave(), row.saved);
    exchange.BeginRun();
    EXPECT_EQ(run.Text1.Text(), row.again);
    exchange.EndRun(false);
  }
}

TEST_F(ExchangeRig, AZeroThatIsTypedOverTheRestOfARunIsAZero) {
  run.Text1.SetText("1");
  Begin(true);
  exchange.Requests().TakeOne();
  exchange.EndRun(true);
  run.Text1.Type("0");  // over the 0 that stands there
  exchange.BeginRun();
  EXPECT_EQ(exchange.Requests().RequestsLeft(), 0);
}

}  // namespace
}  // namespace quarlin
