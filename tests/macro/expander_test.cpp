// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/expander.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/virtual_loop.h"

using namespace std::string_literals;

namespace quarlin {
namespace {

constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();

class ExpanderTest : public testing::Test {
 protected:
  struct Case {
    std::string given, expected;
  };

  std::string Expanded(std::string text) { return expander_.ExpandMacros(text); }

  void Check(const std::vector<Case>& cases) {
    for (const auto& [given, expected] : cases) EXPECT_EQ(Expanded(given), expected) << given;
  }

  ExpanderState& State() { return expander_.State; }

  VirtualLoop loop_;
  MacroControls controls_{loop_};
  bool firstLine_ = true;
  std::vector<double> randoms_;  // taken from the back
  Expander expander_{controls_, [this] { return firstLine_; },
                     [this] {
                       EXPECT_TRUE(State().ExpandBusy);
                       const double random = randoms_.empty() ? 0 : randoms_.back();
                       if (!randoms_.empty()) randoms_.pop_back();
                       return random;
                     }};
};

TEST_F(ExpanderTest, LineEndsAndHexCodesBecomeCharacters) {
  Check({
      {"a^rb^p", "a\rb\r\n"},
      {"^^rp ^", "^\rp ^"},
      {"^R^P", "^R^P"},
      {"{41}{42}", "AB"},
      {"{0D}{0a}{ff}", "\r\n\xFF"},
      {"{}{0}{00041}", "\0\0A"s},
      {"{100}{FFFFFFFFFF}x", "x"},
      {"{{", "{"},
      {"{{41}", "{41}"},
      {"{{{41}", "{A"},
      {"{4x{41}", "{4xA"},
      {"{4{41}", "{4{41}"},  // the brace that ends another opens none
      {"a{4", "a{4"},
      {"{", "{"},
      {"}", "}"},
      {"{5B}CNT1]", "1"},  // hex codes come before the macros in brackets
      {"{5E}r", "^r"}      // and after the line ends
  });
}

TEST_F(ExpanderTest, WhatIsNoMacroPassesUnchanged) {
  for (const std::string& text :
       {""s, "READ"s, "[cnt1]"s, "[CNT1"s, "CNT1]"s, "[CNT4]"s, "[]["s, "[COUNTER"s, "[ASC"s, "[ASC065-06"s,
        "[CHECKSUMXYZ]"s, "\0[\xFF\0]"s, "{4x ^x [ASCII] }"s}) {
    EXPECT_EQ(Expanded(text), text);
  }
  EXPECT_EQ(State().MainCounter, 0);
}

TEST_F(ExpanderTest, RangesGiveTheirCharacters) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  Check({{"[ASC065-067]", "ABC"},
         {"[ASC065-065][ASC066-066][ASC065-065]", "ABA"},
         {"[ASC000-255]", all},
         {"[ASC067-065]", "[ASC067-065]"},
         {"[ASC065-300]", "[ASC065-300]"},
         {"[ASC065-067)", "[ASC065-067)"},
         {"[ASC065*067]", "ABC"},           // whatever stands between
         {"[ASC6x5-8xx]", "\x06\x07\x08"},  // up to the first character that is no digit
         {"[ASC-05-001]", "\0\1"s},         // codes below 0 give nothing
         {"[ASC-05--01]x", "x"},
         {"[[ASC065-065]]", "[A]"}});
}

TEST_F(ExpanderTest, MainCounterIsWrittenAndThenAdvanced) {
  Check({{"R[COUNTER] [COUNTER]", "R000 000"}, {"[COUNTER]", "001"}, {"READ", "READ"}, {"[COUNTER]", "002"}});
  EXPECT_EQ(State().MainCounter, 3);
  EXPECT_EQ(controls_.lblCounter.Caption(), "2");  // the value before the step
  Expanded("READ");
  EXPECT_EQ(controls_.lblCounter.Caption(), "3");
}

TEST_F(ExpanderTest, MainCounterInItsForms) {
  struct Form {
    std::string digits;
    std::int32_t value;
    std::string macro, expected;
  };
  for (const auto& [digits, value, macro, expected] :
       std::vector<Form>{{"2", 300, "[COUNTERHEX]", "2C"},
                         {"4", 300, "[COUNTERHEX]", "012C"},
                         {"3", -1, "[COUNTERHEX]", "FFF"},
                         {"10", -1, "[COUNTERHEX]", "00FFFFFFFF"},
                         {"0", 300, "[COUNTERHEX]", ""},
                         {"x", 300, "[COUNTERHEX]", ""},  // no number counts as 0
                         {"-1", 300, "[COUNTERHEX]", "[COUNTERHEX]"},
                         {"2", 300, "[COUNTER]", "300"},
                         {"5", 300, "[COUNTER]", "00300"},
                         {"3", -5, "[COUNTER]", "-005"},
                         {"", 7, "[COUNTER]", "7"},
                         {"-1", 7, "[COUNTER]", "[COUNTER]"},
                         {"100000", 7, "[COUNTER]", std::string(999, '0') + "7"},
                         {"100000", 7, "[COUNTERHEX]", std::string(999, '0') + "7"},
                         {"3", 65, "[COUNTERASC]", "A"},
                         {"3", 0, "[COUNTERASC]", "\0"s},
                         {"3", 255, "[COUNTERASC]", "\xFF"},
                         {"3", 256, "[COUNTERASC]", "[COUNTERASC]"},
                         {"3", -1, "[COUNTERASC]", "[COUNTERASC]"},
                         {"3", '[', "[COUNTERASC]COUNTERASC]", "["}}) {
    controls_.txtcfr.SetText(digits);
    State().MainCounter = value;
    EXPECT_EQ(Expanded(macro), expected) << digits << " digits of " << value;
    EXPECT_EQ(State().MainCounter == value, expected == macro) << "only a written counter advances";
    State().MainCounter = 0;
  }
}

TEST_F(ExpanderTest, MainCounterStepsWrapsAndStops) {
  struct Step {
    std::int32_t from;
    std::string step, max;
    bool stops;
    std::int32_t to;
    bool wrapped, stopRaised;
  };
  controls_.txtmin.SetText("10");
  for (const Step& s :
       std::vector<Step>{{5, "2", "999", false, 7, false, false},
                         {5, "none", "999", false, 5, false, false},
                         {5, "-7", "999", false, -2, false, false},
                         {998, "1", "999", false, 999, false, false},
                         {999, "1", "999", false, 10, true, false},
                         {999, "1", "999", true, 1000, false, false},
                         {1000, "1", "999", true, 1001, false, true},
                         {1000, "1", "999", false, 10, true, false},
                         {greatest, "1", std::to_string(greatest), false, greatest, false, false},
                         {-greatest, "-2", "0", false, -greatest, false, false}}) {
    State() = {};
    State().MainCounter = s.from;
    controls_.txtStep.SetText(s.step);
    controls_.txtMax.SetText(s.max);
    controls_.chkStopCounter.SetChecked(s.stops);
    Expanded("[COUNTER]");
    EXPECT_EQ(State().MainCounter, s.to) << s.from << " by " << s.step;
    EXPECT_EQ(State().CounterWrapped, s.wrapped) << s.from;
    EXPECT_EQ(State().CounterStop, s.stopRaised) << s.from;
  }
}

TEST_F(ExpanderTest, OnlyAStringWithACounterRaisesTheStop) {
  controls_.chkStopCounter.SetChecked(true);
  controls_.txtMax.SetText("255");
  State().MainCounter = 256;
  Expanded("[CNT1]");
  EXPECT_FALSE(State().CounterStop);
  Expanded("[COUNTERASC]");  // cannot be written any more: the run must end all the same
  EXPECT_TRUE(State().CounterStop);
  State().MainCounter = 0;
  Expanded("[COUNTER]");
  EXPECT_TRUE(State().CounterStop) << "whoever stops clears it";
}

TEST_F(ExpanderTest, LaterLinesOfASequenceUseTheCounterWithoutAdvancingIt) {
  firstLine_ = false;
  Check({{"[COUNTER]", "000"}, {"[COUNTER]", "000"}});
  firstLine_ = true;
  Check({{"[COUNTER]", "000"}, {"[COUNTER]", "001"}});
}

TEST_F(ExpanderTest, SmallCountersCountAndStartAgainAtOne) {
  State().Cnt1 = 8;
  State().Cnt2 = 4;
  State().Cnt3 = 998;
  Check({
      {"AB[CNT1][CNT1]", "AB91"},
      {"[CCNT1][CCNT1]", "11"},
      {"[ZCNT2][CNT2]", "05"},  // the counter is cleared after its use
      {"[CNT2]", "01"},
      {"[CNT3][CNT3][CCNT3]", "999001001"},
      {"[ZCNT1][ZCNT1]", "[ZCNT1]"},
      {"[CNT1]", "1"},
      {"[CN[ZCNT1]T1]", "[CNT1]"}  // put together too late for this pass
  });
  State().Cnt1 = std::numeric_limits<std::int16_t>::max();
  Check({{"[CCNT1][CNT1]", "11"}});
}

TEST_F(ExpanderTest, RandomValuesCoverTheirRangeAndAreRemembered) {
  const double almostOne = std::nextafter(1.0, 0.0);
  randoms_ = {almostOne, almostOne, almostOne, almostOne};
  Check({{"[CHRND]|[RND1]|[RND2]|[RND3]", "\xFF|9|99|999"}, {"[CRND1][CRND2][CRND3]", "999999"}});
  Check({{"[CHRND]|[RND1]|[RND2]|[RND3]", "\x01|1|01|001"}, {"[CRND2][CRND3]", "01001"}});
  randoms_ = {0.5, 0.12};
  Check({{"[RND1][RND1][CRND1]", "255"}});
  randoms_ = {0.5};
  Check({{"[CHRND] [CRND1]", "\x80 128"}});
}

TEST_F(ExpanderTest, ChecksumsCoverWhatStandsLeftOfThem) {
  struct Kind {
    std::string text, name, checksum;
  };
  for (const auto& [text, name, checksum] : std::vector<Kind>{{"READ", "ARC", "1C"},
                                                              {"READ", "SYS", "12"},
                                                              {"READ", "MOD8", "\x1C"},
                                                              {"AB", "LRC", "\x83"},
                                                              {"1234", "MOT", "B9"},
                                                              {"1234", "MOTR", "CB"},
                                                              {"WREC,0,0000,123456,", "ARCR", "35"},
                                                              {"", "MOT", "FF"}}) {
    EXPECT_EQ(Expanded(fmt::format("{}[CHECKSUM{}]{{41}}", text, name)), text + checksum + "A") << name;
    EXPECT_EQ(Expanded(fmt::format("{}[CCHECKSUM{}]{{41}}[CHECKSUMCALC]", text, name)),
              fmt::format("{}A{}", text, checksum))
        << name;
  }
  Check({{"{02}R[CNT3][CHECKSUMSYS]{03}", "\x02R00161\x03"},
         {"READ[CHECKSUMARC][CHECKSUMARC]", "READ1C[CHECKSUMARC]"},
         {"12[CHECKSUMMOT][CHECKSUMARC]", "12EDEC"},
         {"12[CHECKSUMARC][CHECKSUMMOT]", "1263E1"},
         {"[CHECKSUM[ZCNT1]MOT]", "FF"}});
}

TEST_F(ExpanderTest, CommonSumsComeLastInTheFormOfTheirEnding) {
  Check({{"123456789[CHECKSUMCRC16MODBUS]", "1234567894B37"},
         {"123456789[CHECKSUMCRC16MODBUSLOW]", "123456789374B"},
         {"123456789[CHECKSUMCRC16MODBUSRAW]", "123456789\x4B\x37"},
         {"123456789[CHECKSUMCRC16MODBUSRAWLOW]!", "123456789\x37\x4B!"},
         {"123456789[CHECKSUMCRC32LOW]", "1234567892639F4CB"},
         {"123456789[CHECKSUMCRC32RAW]", "123456789\xCB\xF4\x39\x26"},
         {"123456789[CHECKSUMCRC8RAWLOW]", "123456789\xF4"},
         {"123456789[CHECKSUM2C]", "12345678923"},
         {"AB[CHECKSUM2CRAW]", "AB\x7D"},
         {"[CHECKSUMCRC16XMODEM][CHECKSUMCRC16XMODEM]", "0000[CHECKSUMCRC16XMODEM]"},
         {"12[CHECKSUMCRC8][CHECKSUMSYS]", "127262"},
         {"READ[CCHECKSUMSYS][CHECKSUMCALC][CHECKSUM2C]", "READ1281"},
         {"12[CHECKSUMCRC16CCITTHIGH][CCHECKSUMCRC8]", "12[CHECKSUMCRC16CCITTHIGH][CCHECKSUMCRC8]"}});
}

TEST_F(ExpanderTest, AKeptChecksumIsInsertedInItsForms) {
  Check({{"a[CHECKSUMCALC]b", "ab"},
         {"[CHECKSUMCALCA][CHECKSUMCALCH]", "[CHECKSUMCALCA][CHECKSUMCALCH]"},  // nothing is kept yet
         {"READ[CCHECKSUMMOD8][CHECKSUMCALCA]", "READ028"},
         {"READ[CCHECKSUMMOD8][CHECKSUMCALCH]", "READ1C"},
         {"AB[CCHECKSUMLRC]", "AB"},
         {"later [CHECKSUMCALCA]", "later 131"},
         {"O[CCHECKSUMARC][CHECKSUMCALCA]", "O052"},  // the first digit of 4F
         {"\n[CCHECKSUMMOD8][CHECKSUMCALCH]", "\nA"},
         {"\t[CCHECKSUMMOD8][CHECKSUMCALCH]", "\t09"}});
}

TEST_F(ExpanderTest, MultiMacroGoesOnUntilNothingChanges) {
  controls_.chkmulti.SetChecked(true);
  Check({{"12[CHECKSUMMOT][CHECKSUMMOT]", "12ED00"},
         {"{5E}r", "\r"},
         {"{{41}", "A"},
         {"[CN[ZCNT1]T1]", "1"},
         {"[COUNTER]{7B}5B}COUNTER]", "000001"},  // the second use is in a pass of its own
         {"[COUNTERHEX", "[COUNTERHEX"}});
  EXPECT_EQ(State().MainCounter, 2);
  EXPECT_FALSE(State().ExpandBusy);
}

TEST(Replace, TheFirstOrAllIncludingWhatReplacingPutsTogether) {
  std::string text = "aXbX";
  EXPECT_TRUE(ReplaceFirst(text, "X", "YY"));
  EXPECT_EQ(text, "aYYbX");
  EXPECT_FALSE(ReplaceFirst(text, "x", ""));
  EXPECT_FALSE(ReplaceAll(text, "", "z"));
  for (const auto& [given, expected] : std::vector<std::pair<std::string, std::string>>{
           {"aab", "baa"}, {"aabb", "bbaa"}, {"\0ab\xFF"s, "\0ba\xFF"s}, {"ab", "ba"}}) {
    text = given;
    EXPECT_TRUE(ReplaceAll(text, "ab", "ba"));
    EXPECT_EQ(text, expected);
  }
}

}  // namespace
}  // namespace quarlin
