// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/instrument.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <numeric>
#include <string>
#include <vector>

#include "base/text.h"
#include "instrument/options.h"

namespace quarlin::instrument {
namespace {

using namespace std::chrono_literals;

// An instrument in virtual time with a client that fetches everything at once.
class Rig {
 public:
  explicit Rig(const Settings& settings = {}) : instrument(settings, now) {}

  // What comes within `wait`, apart by the moments at which it came.
  std::vector<std::string> AskForPieces(std::string_view request, Duration wait) {
    instrument.Receive(request, now);
    const Instant end = now + wait;
    std::vector<std::string> pieces;
    for (;;) {
      const std::string output(instrument.Output(now));
      instrument.Sent(output.size());
      if (!output.empty()) pieces.push_back(output);
      const auto due = instrument.NextDue();
      if (!due || *due > end) break;
      now = std::max(now, *due);
    }
    now = end;
    return pieces;
  }

  std::string Ask(std::string_view request, Duration wait = 0ms) {
    const auto pieces = AskForPieces(request, wait);
    return std::accumulate(pieces.begin(), pieces.end(), std::string());
  }

  Instant now{1h};
  Instrument instrument;
};

Settings With(Fault fault, double rate, std::optional<ChecksumStyle> checksum = ChecksumStyle::Sysway) {
  Settings settings;
  settings.RateOf(fault) = rate;
  settings.checksum = checksum;
  return settings;
}

constexpr std::size_t weightSize = 19;

// Every digit as 9 and every sign as +.
std::string ShapeOf(std::string weight) {
  for (char& character : weight) {
    if (std::isdigit(character)) character = '9';
    if (character == '-') character = '+';
  }
  return weight;
}

bool ChecksumHolds(const std::string& line) {
  const auto body = line.substr(0, line.size() - 2);
  return line == body + ComputeChecksum(body, ChecksumStyle::Sysway);
}

TEST(InstrumentTest, ARequestIsTakenInAnyFramingAndOnlyOnce) {
  const struct {
    std::vector<std::string> arrivals;
    std::string expected;
  } rows[] = {
      {{"SN\r"}, "SN,18460219\r\n"},
      {{"sn\n"}, "SN,18460219\r\n"},
      {{"Sn\r\n"}, "SN,18460219\r\n"},
      {{"\x02SN\x03\r\n"}, "SN,18460219\r\n"},
      {{"S", "N", "\r"}, "SN,18460219\r\n"},
      {{"VER\r", "\n"}, "VER,1.00\r\n"},  // the second half of CR LF comes late
      {{"VER\r", "\nVER\r"}, "VER,1.00\r\nVER,1.00\r\n"},
      {{"\r\n\r\n \r"}, ""},
      {{"SN\rVER\nUNIT\r\nunit\runit\r"}, "SN,18460219\r\nVER,1.00\r\nUNIT,g\r\nUNIT,lb\r\nUNIT,kg\r\n"},
      {{"TARE\rZERO\r"}, "TARE OK\r\nZERO OK\r\n"},
      {{"READ1\r"}, "ERR\r\n"},
      {{std::string(100000, 'x'), "\rVER\r"}, "ERR\r\nVER,1.00\r\n"},
  };
  for (const auto& row : rows) {
    Rig rig;
    std::string got;
    for (const auto& bytes : row.arrivals) got += rig.Ask(bytes, 1s);
    EXPECT_EQ(got, row.expected) << row.arrivals.front().substr(0, 40);
  }
}

TEST(InstrumentTest, EveryWeightHasTheSameWidthInEveryUnitWhileTheLoadComesAndGoes) {
  const std::array<std::string, 3> shapes{"+99999.999 kg", "+9999999.9  g", "+99999.999 lb"};
  Rig rig;
  int stable = 0, settling = 0;
  for (int i = 0; i < 3000; ++i) {
    if (i > 0 && i % 500 == 0) rig.Ask("UNIT\r");
    if (i == 1500) rig.Ask("TARE\r");
    const bool isStable = rig.Ask("READ\r").starts_with("ST");
    const std::string expected = fmt::format("{},{},{}\r\n", isStable ? "ST" : "US", i < 1500 ? "GS" : "NT",
                                             shapes[static_cast<std::size_t>(i) / 500 % 3]);
    ASSERT_EQ(ShapeOf(rig.Ask("READ\r", 1s)), expected);
    ++(isStable ? stable : settling);
  }
  EXPECT_GT(settling, 100);
  EXPECT_GT(stable, 1500);
  const auto zeroed = rig.Ask("ZERO\rREAD\r").substr(std::string("ZERO OK\r\n").size());
  EXPECT_EQ(zeroed.substr(2, 4) + zeroed.substr(7, 6), ",GS,00000.") << "zero clears the tare";
}

TEST(InstrumentTest, EachFaultDoesWhatItsNameSaysAndNothingElse) {
  const auto sameSize = [](const std::string& line) { return line.size() == weightSize + 2; };
  const struct {
    Fault fault;
    bool (*expected)(const std::string& line, bool sameSize);
  } rows[] = {
      {Fault::Drop, [](const std::string& line, bool) { return line.empty(); }},
      {Fault::Garble, [](const std::string& line, bool same) { return same && !ChecksumHolds(line); }},
      {Fault::Short, [](const std::string& line,
                        bool same) { return !same && line.size() >= weightSize - 1 && ChecksumHolds(line); }},
      {Fault::BadChecksum,
       [](const std::string& line, bool same) {
         return same && !ChecksumHolds(line) && std::isxdigit(line[19]) && std::isxdigit(line[20]);
       }},
      {Fault::Split, [](const std::string& line, bool same) { return same && ChecksumHolds(line); }},
      {Fault::Err, [](const std::string& line, bool) { return line == "ERR"; }},
  };
  for (const auto& row : rows) {
    Rig rig(With(row.fault, 1));
    for (int i = 0; i < 300; ++i) {
      auto line = rig.Ask("READ\r", 100ms);
      if (row.fault != Fault::Drop) {
        ASSERT_TRUE(line.ends_with("\r\n"));
        line.resize(line.size() - 2);
      }
      ASSERT_TRUE(row.expected(line, sameSize(line))) << static_cast<int>(row.fault) << ": " << line;
    }
    EXPECT_EQ(rig.instrument.Totals().Of(row.fault), 300U);
  }
}

TEST(InstrumentTest, AWrongRawChecksumIsWrongAndNoTerminator) {
  Settings settings = With(Fault::BadChecksum, 1, ChecksumStyle::Modulo256);
  settings.end = "\r";
  Rig rig(settings);
  for (int i = 0; i < 500; ++i) {
    const auto answer = rig.Ask("READ\r", 1s);
    ASSERT_EQ(answer.size(), weightSize + 2);
    ASSERT_EQ(answer.find_first_of("\r\n"), weightSize + 1);
    ASSERT_NE(answer.substr(weightSize, 1),
              ComputeChecksum(answer.substr(0, weightSize), ChecksumStyle::Modulo256));
  }
}

TEST(InstrumentTest, TheCountersAgreeWithTheRatesAndWithWhatTheClientSees) {
  constexpr int requests = 10000;
  Settings settings;
  settings.checksum = ChecksumStyle::Sysway;
  settings.faultRates = {0.05, 0.1, 0.02, 0.03, 0.15, 0.08};
  Rig rig(settings);
  std::uint64_t err = 0, wrongSize = 0, wrongChecksum = 0, inPieces = 0, bytes = 0, answers = 0;
  for (int i = 0; i < requests; ++i) {
    const auto pieces = rig.AskForPieces("READ\r\n", 50ms);
    if (pieces.empty()) continue;
    auto line = std::accumulate(pieces.begin(), pieces.end(), std::string());
    ++answers;
    bytes += line.size();
    line.resize(line.size() - 2);
    ASSERT_LE(pieces.size(), 4U);
    if (pieces.size() > 1) ++inPieces;
    if (line == "ERR") {
      ++err;
    } else if (line.size() != weightSize + 2) {
      ++wrongSize;
    } else if (!ChecksumHolds(line)) {
      ++wrongChecksum;
    }
  }
  const Counters& totals = rig.instrument.Totals();
  EXPECT_EQ(err, totals.Of(Fault::Err));
  EXPECT_EQ(wrongSize, totals.Of(Fault::Short));
  EXPECT_EQ(wrongChecksum, totals.Of(Fault::Garble) + totals.Of(Fault::BadChecksum));
  EXPECT_EQ(inPieces, totals.Of(Fault::Split));
  EXPECT_EQ(answers, totals.answers);
  EXPECT_EQ(totals.requests, totals.answers + totals.Of(Fault::Drop));
  EXPECT_EQ(bytes, totals.bytesOut);
  for (std::size_t kind = 0; kind < faultKinds; ++kind) {
    const double rate = settings.faultRates[kind];
    const double sigma = std::sqrt(requests * rate * (1 - rate));
    EXPECT_NEAR(static_cast<double>(totals.faults[kind]), requests * rate, 4 * sigma) << kind;
  }
}

TEST(InstrumentTest, TheFaultsDependOnTheSeedAndNotOnTheTiming) {
  const auto manyAnswers = [](std::uint64_t seed, Duration jitter) {
    Settings settings = With(Fault::Garble, 0.3);
    settings.RateOf(Fault::Drop) = 0.3;
    settings.seed = seed;
    settings.jitter = jitter;
    Rig rig(settings);
    std::string answers;
    for (int i = 0; i < 100; ++i) answers += rig.Ask("VER\r", 1s);
    return answers;
  };
  EXPECT_EQ(manyAnswers(3, 0ms), manyAnswers(3, 900ms));
  EXPECT_NE(manyAnswers(3, 0ms), manyAnswers(4, 0ms));
}

TEST(InstrumentTest, DelayAndJitterBoundTheAnswerTimeAndKeepTheOrder) {
  Settings settings;
  settings.delay = 20ms;
  settings.jitter = 10ms;
  Rig rig(settings);
  Duration shortest = 1h, longest = 0ms;
  for (int i = 0; i < 500; ++i) {
    rig.instrument.Receive("VER\r", rig.now);
    const Duration took = rig.instrument.NextDue().value() - rig.now;
    shortest = std::min(shortest, took);
    longest = std::max(longest, took);
    EXPECT_EQ(rig.Ask("", took - 1ns), "");
    EXPECT_EQ(rig.Ask("", 1ns), "VER,1.00\r\n");
  }
  EXPECT_GE(shortest, 20ms);
  EXPECT_LT(shortest, 21ms);
  EXPECT_GT(longest, 29ms);
  EXPECT_LT(longest, 30ms);
  for (int i = 0; i < 50; ++i) EXPECT_EQ(rig.Ask("SN\rVER\r", 1s), "SN,18460219\r\nVER,1.00\r\n");
}

TEST(InstrumentTest, StreamedWeightsKeepTheirRateAndStayOutOfASplitAnswer) {
  Settings settings = With(Fault::Split, 1);
  settings.streamRate = 1000;
  Rig rig(settings);
  std::string all;
  for (int i = 0; i < 100; ++i) all += rig.Ask("READ\r", 100ms);
  for (const auto& line : SplitLines(all)) {
    ASSERT_EQ(ShapeOf(line.substr(2, 17)), ",GS,+99999.999 kg") << line;
    ASSERT_TRUE(ChecksumHolds(line)) << line;
  }
  EXPECT_EQ(rig.instrument.Totals().streamed, 10000U);
  EXPECT_EQ(rig.instrument.Totals().answers, 100U);
  EXPECT_EQ(all.size(), 10100 * (weightSize + 4));

  rig.instrument.Receive("READ\r", rig.now);
  rig.instrument.Sent(rig.instrument.Output(rig.now).size());
  EXPECT_GE(rig.instrument.NextDue().value() - rig.now, 2ms) << "the stream must not hurry the next piece";
}

TEST(InstrumentTest, AClientThatDoesNotReadHoldsUpTheInstrumentAndMakesNothingGrow) {
  Settings settings;
  settings.streamRate = 100;
  Rig rig(settings);
  std::size_t asked = 0;
  EXPECT_FALSE(rig.instrument.Output(rig.now + 10ms).empty());
  for (; rig.instrument.WantsInput() && asked < 100000; ++asked) {
    rig.instrument.Receive("VER\r", rig.now);
    ASSERT_FALSE(rig.instrument.NextDue()) << "there is nothing to wake up for but the client";
  }
  EXPECT_LT(asked, 1000U);
  rig.now += 24h;
  EXPECT_EQ(rig.instrument.Output(rig.now).size(), weightSize + 2);
  const auto fetched = rig.Ask("", 0ms) + rig.Ask("", 0ms);
  EXPECT_LT(fetched.size(), (asked + 60) * (weightSize + 2)) << "a day of weights must not come at once";
  EXPECT_EQ(rig.instrument.Totals().answers, asked);
  EXPECT_TRUE(rig.instrument.WantsInput());
}

TEST(InstrumentTest, AnswersThatAreDueAtOnceStayApart) {
  Rig rig;
  EXPECT_EQ(rig.AskForPieces("VER\rFOO\rSN\r", 1s),
            (std::vector<std::string>{"VER,1.00\r\n", "ERR\r\n", "SN,18460219\r\n"}));
}

TEST(InstrumentTest, NothingOfAClientThatHasGoneReachesTheNext) {
  Settings settings = With(Fault::Split, 1);
  settings.streamRate = 10;
  Rig rig(settings);
  rig.instrument.Receive("VER\rVER\rRE", rig.now);
  // All but one byte of the first piece has gone.
  rig.instrument.Sent(rig.instrument.Output(rig.now).size() - 1);
  rig.instrument.ForgetClient();
  const auto lines = SplitLines(rig.Ask("AD\r", 350ms));
  ASSERT_EQ(lines.size(), 4U) << "ERR, and three weights that the begun answer must not hold up";
  EXPECT_EQ(lines[0], "ERR");
  EXPECT_TRUE(lines[1].starts_with("ST,GS"));
}

TEST(InstrumentTest, ItFinishesWithItsCountWhenTheLastPieceIsOut) {
  Settings settings = With(Fault::Split, 1);
  settings.count = 2;
  Rig rig(settings);
  rig.instrument.Receive("VER\r\n\r\nFOO\rVER\rVER\r", rig.now);
  EXPECT_FALSE(rig.instrument.WantsInput());
  EXPECT_FALSE(rig.instrument.Finished());
  EXPECT_TRUE(rig.Ask("", 1s).ends_with("\r\nERR\r\n"));
  EXPECT_TRUE(rig.instrument.Finished());
  EXPECT_EQ(rig.instrument.Totals().requests, 2U);
}

TEST(InstrumentOptionsTest, AWrongOptionIsNamed) {
  const struct {
    std::vector<const char*> arguments;
    std::string expected;
  } rows[] = {
      {{"--delay=1.5", "--seed", "0", "--checksum", "lrc", "--bad-checksum", "1"}, ""},
      {{"--drop=0.5", "--err=0.5"}, ""},
      {{"--nonsense"}, "--nonsense: unknown option"},
      {{"file"}, "file: unknown option"},
      {{"--delay"}, "--delay: needs a value"},
      {{"--delay", "5x"}, "--delay 5x: must be a number from 0"},
      {{"--drop", "1.01"}, "--drop 1.01: must be a number from 0 to 1"},
      {{"--drop", "nan"}, "--drop nan: must be"},
      {{"--drop=0.5", "--err=0.6"}, "the rates of all faults together"},
      {{"--seed", "-1"}, "--seed -1: must be"},
      {{"--count", "0"}, "--count 0: must be"},
      {{"--end", "CR"}, "--end CR: must be cr, lf or crlf"},
      {{"--checksum=crc"}, "--checksum crc: must be none"},
      {{"--bad-checksum", "0.1"}, "--bad-checksum needs a --checksum"},
      {{"--checksum=lrc", "--checksum=none", "--bad-checksum=1"}, "--bad-checksum needs a --checksum"},
      {{"--quiet=1"}, "--quiet: takes no value"},
      {{"--udp", "65535", "--bind", "::1", "--seed", "3"}, ""},
      {{"--tcp", "65536"}, "--tcp 65536: must be a number from 0 to 65535"},
      {{"--tcp", "1", "--udp", "1"}, "--tcp and --udp exclude"},
      {{"--link", "x", "--tcp", "0"}, "--link is for a pseudo-terminal"},
      {{"--bind", "::1"}, "--bind needs"},
      {{"--tcp", "0", "--bind", "localhost"}, "--bind localhost: must be"},
      {{"--join", "a", "b"}, ""},
      {{"--join=a"}, "--join: needs two values"},
      {{"--join", "a", "b", "--quiet"}, "--join stands alone"},
  };
  for (const auto& row : rows) {
    const auto error = ParseOptions(row.arguments).error;
    EXPECT_EQ(error.substr(0, row.expected.size()), row.expected) << row.arguments.front();
    EXPECT_EQ(error.empty(), row.expected.empty()) << error;
  }
}

}  // namespace
}  // namespace quarlin::instrument
