// SPDX-License-Identifier: GPL-3.0-or-later
// The faults of the dialog test's answers: what is understood, how often each strikes, what it changes.

#include "testmodes/answer_faults.h"

#include <gtest/gtest.h>

#include <set>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

FaultPlan Plan(std::string_view entry) {
  auto plan = FaultPlan::Read(entry);
  EXPECT_TRUE(plan) << entry;
  return plan.value_or(FaultPlan());
}

TEST(AnswerFaults, UnderstandsAnEntryOnlyAsAWhole) {
  for (const char* good :
       {"", "drop 0.1", "drop 0", "drop 1", "DROP every 3", "truncate\tevery 5 ,garble 1e-2",
        "delay 200 every 10", "delay 200 0.5, jitter 50", "seed 7", "drop 1,, double 1, "}) {
    EXPECT_TRUE(FaultPlan::Read(good)) << good;
  }
  for (const char* bad : {"drop",
                          "drop often",
                          "drop 1.1",
                          "drop -0.1",
                          "drop every",
                          "drop every 0",
                          "drop every 1.5",
                          "drop every 5 6",
                          "drop 0,1 double",
                          "lose 0.1",
                          "delay",
                          "delay -1",
                          "delay 4000000",
                          "delay 1.5",
                          "delay 20 ms",
                          "seed",
                          "seed -1",
                          "seed 1 2",
                          "seed x",
                          "drop 0.1; double 0.1",
                          "drop nan",
                          "\xFF"}) {
    EXPECT_FALSE(FaultPlan::Read(bad)) << bad;
  }
}

TEST(AnswerFaults, EveryNthIsCountedExactly) {
  FaultPlan plan = Plan("drop every 3, double every 2, delay 10 every 4");
  std::string seen;
  for (int i = 0; i < 12; ++i) {
    const FaultyAnswer answer = plan.Apply("x", "\r");
    seen += answer.Has(Fault::Drop) ? 'd' : answer.Has(Fault::Double) ? '2' : '.';
    EXPECT_EQ(answer.delay, i % 4 == 3 ? 10ms : 0ms);
  }
  EXPECT_EQ(seen, ".2d2.d.2d2.d") << "a dropped answer counts for the others, too";
}

TEST(AnswerFaults, ARateIsMetAndASeedRepeatsIt) {
  const auto drops = [](std::string_view entry) {
    FaultPlan plan = Plan(entry);
    std::string seen;
    for (int i = 0; i < 10000; ++i) seen += plan.Apply("x", "\r").Has(Fault::Drop) ? 'd' : '.';
    return seen;
  };
  const std::string first = drops("drop 0.1, seed 7");
  EXPECT_NEAR(static_cast<double>(std::count(first.begin(), first.end(), 'd')), 1000, 100);
  EXPECT_EQ(first, drops("seed 7, drop 0.1"));
  EXPECT_NE(first, drops("drop 0.1, seed 8"));
}

TEST(AnswerFaults, EachChangeIsARealOneAndNoMore) {
  std::set<std::size_t> lengths;
  std::set<std::string> sums;
  FaultPlan truncate = Plan("truncate 1");
  FaultPlan garble = Plan("garble 1");
  FaultPlan checksum = Plan("checksum 1");
  const std::string good = "S 12.5 kg4f";
  for (int i = 0; i < 500; ++i) {
    const std::string cut = truncate.Apply(good, "\r").text;
    EXPECT_TRUE(good.starts_with(cut));
    lengths.insert(good.size() - cut.size());

    const std::string garbled = garble.Apply(good, "kA").text;
    ASSERT_EQ(garbled.size(), good.size());
    int differences = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
      if (garbled[at] == good[at]) continue;
      ++differences;
      EXPECT_EQ(std::string("kA").find(garbled[at]), std::string::npos) << "would end the answer early";
    }
    EXPECT_EQ(differences, 1);

    const std::string spoilt = checksum.Apply(good, "\r").text;
    EXPECT_EQ(spoilt.substr(0, 9), "S 12.5 kg");
    EXPECT_NE(spoilt.substr(9), "4f");
    EXPECT_EQ(spoilt.substr(9).find_first_not_of("0123456789abcdef"), std::string::npos) << spoilt;
    sums.insert(spoilt);
  }
  EXPECT_EQ(lengths, (std::set<std::size_t>{1, 2, 3}));
  EXPECT_EQ(sums.size(), 30U) << "each of two digits, each other one";
}

TEST(AnswerFaults, WhatAnAnswerIsTooShortForDoesNotStrike) {
  FaultPlan plan = Plan("checksum 1");
  EXPECT_TRUE(plan.Apply("x", "\r").faults.empty());
  FaultPlan all = Plan("checksum 1, truncate 1, garble 1");
  EXPECT_EQ(all.Apply("", "\r").faults.size(), 0U);
  FaultPlan cut = Plan("truncate 1");
  EXPECT_EQ(cut.Apply("x", "\r").text, "");
}

TEST(AnswerFaults, JitterStaysWithinItsBounds) {
  FaultPlan plan = Plan("delay 200, jitter 50");
  std::set<std::int64_t> delays;
  for (int i = 0; i < 1000; ++i) delays.insert(plan.Apply("x", "\r").delay.count());
  EXPECT_EQ(*delays.begin(), 200);
  EXPECT_EQ(*delays.rbegin(), 249);
}

}  // namespace
}  // namespace quarlin
