// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/parser.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/virtual_loop.h"

using namespace std::string_literals;

namespace quarlin {
namespace {

class ParserTest : public testing::Test {
 protected:
  struct Case {
    std::string received, format, expected;
  };

  void Check(const std::vector<Case>& cases) {
    for (const auto& [received, format, expected] : cases) {
      EXPECT_EQ(parser_.ParseReceived(format, received), expected) << format << " on " << received;
    }
  }

  VirtualLoop loop_;
  Parser parser_{loop_.Clocks()};
};

TEST_F(ParserTest, EachLetterTakesOneCharacter) {
  Check({{"AB", "EE", "4142"},
         {"\n\xFF\0"s, "EEE", "0AFF00"},
         {"AB", "AA", "065066"},
         {"\xFF", "A", "255"},
         {"ab", "Uu", "Ab"},
         {"AB1", "uuu", "ab1"},
         {"\xE0\xF7\xFE\xFF\xDF", "UUUUU", "\xC0\xF7\xDE\xFF\xDF"},
         {"\xC0\xD7\xDE", "uuu", "\xE0\xD7\xFE"},
         {"12.5", "RRCR", "125"},
         {"x\r", "RL", "x\r\n"},
         {"A\xFF", "bb", "0100000111111111"},
         {"0Af", "eee", "000010101111"},
         {"gA", "ee", "1010"},  // no digit gives nothing
         {"0A0A", "RR,R", "0A,A"},
         {"abc", ":R;", ":b;"}});
}

TEST_F(ParserTest, TheClockStandsInPlaceOfACharacter) {
  using namespace std::chrono;
  loop_.SetLocal(local_days(2031y / March / 7) + 9h + 5min + 59s);
  Check({{"abcd", "RTRD", "a09:05:59c07/03/31"}});
}

TEST_F(ParserTest, BlanksTakeNoCharacter) {
  Check({{"AB", "A A", "065 066"},
         {"AB", "  RR ", "  AB "},
         {"AB", "R   R", "A   B"},
         {"", " ", " "},
         {"0A0A", "hh HH", "10 10"},
         {"0A0A", "hh hh", "10 10"},
         {"41", "ss ", "A "}});
}

TEST_F(ParserTest, NumbersEndWhereTheLetterChanges) {
  Check({{"0A0A", "hhHH", "1010"},
         {"00FF", "hhhh", "0255"},
         {"00ff10", "HHHHhh", "025516"},
         {"2020", "ssSS", "  "},
         {"3232", "wwWW", "  "},
         {"4165", "ssWW", "AA"},
         {"0000", "wwww", "\x01"},
         {"00", "SS", "\x01"},
         {"41x", "ssR", "Ax"},
         {"41,42", "ss,ss", "A,B"},
         {"FFFFFFFF", "hhhhhhhh", "4294967295"}});
}

TEST_F(ParserTest, WhatIsNoNumberGivesNothing) {
  Check({{"000000001", "hhhhhhhhh", ""},  // nine digits
         {"0G", "hh", ""},
         {"-1", "hh", ""},
         {"&1", "hh", ""},
         {"1A", "ww", ""},
         {"256", "www", ""},
         {"100", "sss", ""},
         {"99999999999", "wwwwwwwwwww", ""},
         {" 1", "ww", ""},
         {"\0\xFF"s, "hh", ""},
         {"0Gx", "hhR", "x"}});
}

TEST_F(ParserTest, FormatAndAnswerOfDifferentLengths) {
  Check({
      {"abcdef", "R", "a"},
      {"abcdef", "", ""},
      {"", "", ""},
      {"ab", "RRR", "abR"},  // beyond the answer the format itself is read
      {"", "AR", "065R"},
      {"4", "ww", ""},
      {"", "R R", "R  "}  // the second R meets the blank
  });
}

TEST_F(ParserTest, ANumberLeavesNothingBehindForTheNextAnswer) {
  Check({{"4", "s", "\x04"}, {"41", "ss", "A"}});
}

TEST_F(ParserTest, StepsCollectUntilTheFlagChanges) {
  EXPECT_EQ(parser_.ParserNumberStep("h", "1"), "");
  EXPECT_EQ(parser_.ParserNumberStep("h", "F"), "");
  EXPECT_EQ(parser_.ParserNumberStep("s", "4"), "31");
  EXPECT_EQ(parser_.ParserNumberStep("", ""), "\x04");
  EXPECT_EQ(parser_.ParserNumberStep("", ""), "");
}

}  // namespace
}  // namespace quarlin
