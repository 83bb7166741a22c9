// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/run_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class RunRecordRig : public testing::Test {
 protected:
  struct Heard : RunListener {
    void RunBegan() override { lines.push_back("began"); }
    void ExchangeChanged(const ExchangeRecord& exchange) override {
      std::string line = std::to_string(exchange.number);
      for (const Finding& finding : exchange.findings)
        line += " " + std::string(VerdictName(finding.verdict));
      if (exchange.ended) line += exchange.open ? " open" : " ended";
      lines.push_back(line);
    }
    std::vector<std::string> lines;
  };

  std::uint64_t Send(std::string_view request = "READ\r\n") { return record_.AddRequest(request); }

  void Answer(std::uint64_t number, std::string_view answer = "12.5 kg", Duration after = 10ms) {
    loop_.Pass(after);
    record_.Received(number, answer, loop_.Now() - 1ms);
  }

  void Judge(std::uint64_t number, std::initializer_list<Verdict> verdicts) {
    for (const Verdict verdict : verdicts) record_.Say(number, {verdict});
    record_.Close(number);
  }

  const RunSums& Sums() const { return record_.Sums(); }

  std::uint64_t Unended() const {
    const auto unended = [](const ExchangeRecord& e) { return e.hasRequest && !e.ended; };
    std::uint64_t count = 0;
    for (std::uint64_t number = record_.FirstKept(); number <= record_.LastNumber(); ++number) {
      if (unended(*record_.Find(number))) ++count;
    }
    return count;
  }

  VirtualLoop loop_;
  RunRecord record_{loop_.Clocks()};
};

struct VerdictRow {
  std::vector<Verdict> verdicts;
  bool request;
  std::array<std::uint64_t, 5> sums;  // requests, good, failed, open, sent
};

TEST_F(RunRecordRig, WhatIsSaidOfAnExchangeDecidesWhereItCounts) {
  using enum Verdict;
  const std::vector<VerdictRow> rows{
      {{}, true, {1, 0, 0, 1, 1}},
      {{Answered}, true, {1, 1, 0, 0, 1}},
      {{TimeOut}, true, {1, 0, 1, 0, 1}},
      {{NotSent}, true, {1, 0, 1, 0, 0}},
      {{Err}, true, {1, 0, 1, 0, 1}},
      {{NotEqual, WrongLength, WrongChecksum}, true, {1, 0, 1, 0, 1}},
      {{Answered, WrongChecksum}, true, {1, 0, 1, 0, 1}},
      {{TimeOut, TimeOut}, true, {1, 0, 1, 0, 1}},
      {{Unsolicited}, false, {0, 0, 0, 0, 0}},
      {{Unsolicited, WrongLength}, false, {0, 0, 0, 0, 0}},
      {{NotSent}, false, {0, 0, 0, 0, 0}},
      {{}, false, {0, 0, 0, 0, 0}},
  };
  for (const VerdictRow& row : rows) {
    record_.Begin();
    const std::uint64_t number = row.request ? Send() : record_.AddOther();
    for (const Verdict verdict : row.verdicts) record_.Say(number, {verdict});
    record_.Close(number);
    record_.Close(number);
    record_.Say(number, {Err, "too late"});
    const RunSums& sums = Sums();
    EXPECT_EQ((std::array{sums.requests, sums.good, sums.failed, sums.open, sums.sent}), row.sums);
    for (const Verdict verdict : allVerdicts) {
      const bool said = std::count(row.verdicts.begin(), row.verdicts.end(), verdict) > 0;
      EXPECT_EQ(sums.Of(verdict), said ? 1U : 0U) << VerdictName(verdict);
    }
    const bool failed = std::any_of(row.verdicts.begin(), row.verdicts.end(), IsFailure);
    EXPECT_EQ(record_.FirstFailures().size(), failed ? 1U : 0U);
  }
}

TEST_F(RunRecordRig, TimesRunFromTheSendToTheCompleteAnswer) {
  const LocalTime noon = std::chrono::local_days(std::chrono::year(2026) / 2 / 3) + 12h;
  loop_.Pass(3h);
  loop_.SetLocal(noon);
  record_.Begin();
  loop_.Pass(1s);
  const std::uint64_t first = Send();
  Answer(first, "A", 250ms);
  Judge(first, {Verdict::Answered});
  const std::uint64_t second = Send();
  loop_.Pass(2s);
  Judge(second, {Verdict::TimeOut});
  const std::uint64_t stray = record_.AddOther();
  Answer(stray, "late", 5s);
  Judge(stray, {Verdict::Unsolicited});

  const ExchangeRecord& answered = *record_.Find(first);
  EXPECT_EQ(record_.WallClock(answered.began), noon + 1s);
  EXPECT_EQ(record_.WallClock(*answered.firstByte), noon + 1249ms);
  EXPECT_EQ(answered.Latency(), Duration(250ms));
  EXPECT_FALSE(record_.Find(second)->Latency());
  EXPECT_FALSE(record_.Find(stray)->Latency());
  EXPECT_EQ(record_.Latencies().Count(), 1U);
  EXPECT_EQ(record_.Latencies().Greatest(), Duration(250ms));
  EXPECT_EQ(Sums().received, 2U);
}

TEST_F(RunRecordRig, TheOldestUnansweredSendIsFoundAmongEndedOnesAndStrays) {
  EXPECT_FALSE(record_.OldestUnanswered());
  record_.AddOther();
  EXPECT_FALSE(record_.OldestUnanswered());
  const std::uint64_t a = Send();
  const std::uint64_t b = Send();
  record_.AddOther();
  const std::uint64_t c = Send();
  EXPECT_EQ(record_.OldestUnanswered(), a);
  Judge(b, {Verdict::NotSent});
  EXPECT_EQ(record_.OldestUnanswered(), a);
  Judge(a, {Verdict::Answered});
  EXPECT_EQ(record_.OldestUnanswered(), c);
  record_.End();
  EXPECT_FALSE(record_.OldestUnanswered());
  record_.Begin();
  EXPECT_EQ(Send(), 1U);
  EXPECT_EQ(record_.OldestUnanswered(), 1U);
}

TEST_F(RunRecordRig, AnAnswerAfterTheEndIsAddedAndLeavesTheOpenExchangeOpen) {
  const std::uint64_t waited = Send();
  loop_.Pass(1s);
  record_.End();
  EXPECT_EQ(record_.Ended(), loop_.Now());
  EXPECT_TRUE(record_.Find(waited)->open);
  Answer(waited, "too late");
  record_.Say(waited, {Verdict::Answered});
  const std::uint64_t stray = record_.AddOther();
  Answer(stray, "too late");
  Judge(stray, {Verdict::Unsolicited});

  EXPECT_EQ(Sums().open, 1U);
  EXPECT_EQ(Sums().good, 0U);
  EXPECT_EQ(Sums().Of(Verdict::Answered), 0U);
  EXPECT_EQ(Sums().Of(Verdict::Unsolicited), 1U);
  EXPECT_EQ(record_.Find(waited)->answer.size, 0U);
  EXPECT_EQ(record_.Find(stray)->answer.bytes, "too late");
  EXPECT_EQ(record_.Latencies().Count(), 0U);
}

TEST_F(RunRecordRig, LongTextsAreKeptFromTheirBeginning) {
  const std::string huge(3 << 20, 'x');
  const std::uint64_t number = Send(huge);
  Answer(number, "<" + huge);
  record_.Accepted(number, huge);
  record_.Say(number, {Verdict::NotEqual, huge});
  const ExchangeRecord& exchange = *record_.Find(number);
  for (const KeptText* text : {&exchange.request, &exchange.answer, &exchange.parsed}) {
    EXPECT_EQ(text->bytes.size(), RunRecord::keptBytes);
    EXPECT_LE(text->bytes.capacity(), 2 * RunRecord::keptBytes);
    EXPECT_GE(text->size, huge.size());
  }
  EXPECT_EQ(exchange.answer.bytes.substr(0, 2), "<x");
  EXPECT_EQ(exchange.findings.back().detail.size(), RunRecord::keptBytes);
}

TEST_F(RunRecordRig, WhatWasCalledOffIsOpenAndWasNotSent) {
  const std::uint64_t called = Send();
  record_.CallOff(called);
  record_.CallOff(called);
  Send();
  EXPECT_EQ(Sums().requests, 2U);
  EXPECT_EQ(Sums().sent, 1U);
  EXPECT_EQ(Sums().open, 1U);
  EXPECT_EQ(Sums().failed, 0U);
}

// Places in the ring are used again; nothing of who was there before may shine through.
TEST_F(RunRecordRig, TheLastTenThousandAreKeptAndOlderOnesCountAsOpen) {
  for (std::size_t i = 0; i < RunRecord::mostKept; ++i) {
    const std::uint64_t number = Send("old " + std::to_string(i));
    if (number == 1) continue;  // never answered
    Answer(number, "old answer", 1ms);
    record_.Accepted(number, "old");
    Judge(number, {Verdict::WrongLength});
  }
  EXPECT_EQ(Sums().open, 0U);
  const std::uint64_t newest = Send("new");
  EXPECT_EQ(Sums().open, 1U);
  EXPECT_EQ(record_.Find(1), nullptr);
  Judge(1, {Verdict::Answered});
  EXPECT_EQ(Sums().good, 0U);
  EXPECT_EQ(record_.OldestUnanswered(), newest);
  Judge(newest, {Verdict::TimeOut});
  Send("newer");

  ASSERT_EQ(record_.LastNumber() - record_.FirstKept() + 1, RunRecord::mostKept);
  EXPECT_EQ(record_.FirstKept(), 3U);
  EXPECT_EQ(record_.Find(RunRecord::mostKept + 3), nullptr);
  EXPECT_EQ(record_.Find(0), nullptr);
  const ExchangeRecord& last = *record_.Find(newest + 1);
  EXPECT_EQ(last.request.bytes, "newer");
  EXPECT_TRUE(last.answer.bytes.empty() && last.answer.size == 0 && last.parsed.size == 0);
  EXPECT_TRUE(last.findings.empty());
  EXPECT_FALSE(last.ended || last.open || last.firstByte || last.completed);
}

TEST_F(RunRecordRig, TheFirstAndTheLastFailuresStayWhole) {
  for (int i = 1; i <= 50; ++i) {
    const std::uint64_t number = Send(std::to_string(i));
    if (i % 2 == 0) Answer(number, "wrong");
    Judge(number, {i % 2 == 0 ? Verdict::NotEqual : Verdict::TimeOut});
    Judge(Send(), {Verdict::Answered});
  }
  ASSERT_EQ(record_.FirstFailures().size(), 20U);
  ASSERT_EQ(record_.LastFailures().size(), 20U);
  for (std::size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(record_.FirstFailures()[i].request.bytes, std::to_string(i + 1));
    EXPECT_EQ(record_.LastFailures()[i].request.bytes, std::to_string(i + 31));
  }
  EXPECT_EQ(record_.LastFailures().back().answer.bytes, "wrong");
  record_.Begin();
  EXPECT_TRUE(record_.FirstFailures().empty() && record_.LastFailures().empty());
}

TEST_F(RunRecordRig, AListenerHearsEveryVerdictAndEveryEndUntilItLeaves) {
  Heard heard;
  Heard second;
  record_.Follow(heard);
  record_.Follow(second);
  const std::uint64_t number = Send();
  Answer(number);
  Judge(number, {Verdict::NotEqual, Verdict::NotEqual, Verdict::WrongLength});
  record_.Leave(second);
  Send();
  record_.End();
  record_.Begin();
  EXPECT_EQ(heard.lines, (std::vector<std::string>{"1 not equal", "1 not equal wrong length",
                                                   "1 not equal wrong length ended", "2 open", "began"}));
  EXPECT_EQ(second.lines.size(), 3U);
  record_.Leave(heard);
  Send();
  record_.End();
  EXPECT_EQ(heard.lines.size(), 5U);
}

// Whatever happens in whatever order, also when exchanges leave the ring while they are unanswered.
TEST_F(RunRecordRig, TheSumsAlwaysAddUp) {
  std::mt19937 random(11);
  std::uint64_t last = 0;
  for (int i = 0; i < 60'000; ++i) {
    const std::uint64_t number = last - std::min<std::uint64_t>(last, random() % 12'000);
    const Verdict verdict = allVerdicts[random() % verdictKinds];
    switch (random() % 8) {
      case 0:
        last = record_.AddOther();
        break;
      case 1:
        record_.Received(number, "answer", loop_.Now());
        break;
      case 2:
        record_.Say(number, {verdict, "detail"});
        break;
      case 3:
        Judge(record_.OldestUnanswered().value_or(number), {verdict});
        break;
      case 4:
        if (i % 9999 == 0) record_.End();
        break;
      default:
        last = Send();
    }
    ASSERT_LE(Sums().good + Sums().failed + Sums().open, Sums().requests);
    if (i % 500 != 0) continue;
    ASSERT_EQ(Sums().requests, Sums().good + Sums().failed + Sums().open + Unended()) << "step " << i;
    ASSERT_LE(Sums().sent, Sums().requests);
  }
  EXPECT_GT(last, 2 * RunRecord::mostKept);
  record_.End();
  EXPECT_EQ(Unended(), 0U);
  EXPECT_EQ(Sums().requests, Sums().good + Sums().failed + Sums().open);
}

}  // namespace
}  // namespace quarlin
