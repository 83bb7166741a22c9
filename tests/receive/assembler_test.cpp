// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/assembler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

// The instrument's end of an assembler: pieces with the pauses between them, and what the program makes of
// them.
class AssemblerRig : public testing::Test {
 protected:
  static constexpr Duration quiet = 50ms;

  // One arrival, handled as the receive loop does it: "(12.5)" a string, "!" an "ERR" counted.
  void Arrive(std::string_view bytes) {
    assembler.Pend(bytes, now);
    const Assembly assembly = assembler.Take();
    if (assembly == Assembly::DiscardEnds) made += "|";
    if (assembly != Assembly::Beginning && assembly != Assembly::Complete) return;
    const bool complete = assembly == Assembly::Complete;
    if (assembler.HoldsError()) {
      made += "!";
      assembler.Discard(complete);
    } else if (complete) {
      made += "(" + std::string(assembler.StripRxTerminator(assembler.State().RxBuffer)) + ")";
      assembler.Clear();
    }
  }

  void Pass(Duration duration) {
    now += duration;
    if (assembler.Discarding() && now >= assembler.LastByte() + quiet) assembler.EndDiscard();
  }

  std::string Feed(const std::vector<std::string>& pieces, Duration apart) {
    made.clear();
    assembler.ClearAll();
    for (const std::string& piece : pieces) {
      Arrive(piece);
      Pass(apart);
    }
    return made;
  }

  Assembler assembler;
  Instant now{1h};
  std::string made;
};

struct ErrRow {
  const char* terminator;
  std::int16_t minChars;
  std::vector<std::string> pieces;
  Duration apart;
  const char* made;
};

TEST_F(AssemblerRig, AnErrIsCountedOnceHoweverItIsCut) {
  const std::vector<ErrRow> rows{
      {"\r\n", 0, {"ERR 05\r\n", "1\r\n"}, 20ms, "!(1)"},
      {"\r\n", 0, {"E", "R", "R", "\r", "\n", "1\r\n"}, 49ms, "!|(1)"},
      {"\r\n", 0, {"ERR\r", "\n", "1\r\n"}, 20ms, "!|(1)"},              // cut in its terminator
      {"\r\n", 0, {"12 ER", "R 5", " kg\r\n", "1\r\n"}, 20ms, "!|(1)"},  // with text before and behind
      {"\r\n", 0, {"ERR", "ERR", "ERR\r\n", "1\r\n"}, 20ms, "!|(1)"},    // counted once
      {"\r\n",
       0,
       {"ERR", "x\r\ny", "1\r\n"},
       20ms,
       "!|(1)"},                                    // what came in the tick of the end goes with it
      {"\r\n", 0, {"ERR", "1\r\n"}, 50ms, "!(1)"},  // quiet for long enough: the next answer
      {"\r", 0, {"ERR", "\n\r", "1\r"}, 20ms, "!|(1)"},
      {"", 10, {"ERR", "12345678901", "1234567890"}, 20ms, "!"},  // nothing but the quiet ends it
      {"", 10, {"ERR", "1234567890"}, 60ms, "!(1234567890)"},
      {"", 10, {"1234567ERR", "1234567890"}, 20ms, "!(1234567890)"},  // complete: nothing of it can follow
      {"", 1, {"ERR", "1", "ERR"}, 1ms, "!(1)!"},                     // every arrival is complete in itself
      {"", 0, {"xERRx", "1"}, 1ms, "!(1)"},
  };
  for (const ErrRow& row : rows) {
    SCOPED_TRACE(row.terminator + (" " + std::to_string(row.minChars)) + " " + row.pieces.front());
    assembler.SetRule(row.terminator, row.minChars);
    EXPECT_EQ(Feed(row.pieces, row.apart), row.made);
  }
}

TEST_F(AssemblerRig, AnUnfinishedStringGoesWithItsRestWhileThatMayStillCome) {
  assembler.SetRule("\r\n", 0);
  for (const auto& [pause, expected] :
       std::vector<std::pair<Duration, const char*>>{{20ms, "|(1)"}, {60ms, "(5 kg)(1)"}}) {
    made.clear();
    Arrive("12.");
    Pass(pause);
    assembler.DiscardUnfinished(now, quiet);
    Arrive("5 kg\r\n");
    Arrive("1\r\n");
    EXPECT_EQ(made, expected);
  }
}

TEST_F(AssemblerRig, AStringWithoutEndIsHandedOnAtTheLimitAndKeepsItsFirstInstant) {
  assembler.SetRule("\r\n", 0);
  const Instant began = now;
  assembler.Pend(std::string(Assembler::limit - 1, 'x'), now);
  EXPECT_EQ(assembler.Take(), Assembly::Beginning);
  Pass(1s);
  assembler.Pend("x", now);
  EXPECT_EQ(assembler.Take(), Assembly::Overlong);
  EXPECT_EQ(assembler.FirstByte(), began);
  EXPECT_EQ(assembler.State().RxBuffer.size(), Assembler::limit);
}

TEST(QuietTime, IsThatOfFourCharactersOnASlowLine) {
  EXPECT_EQ(QuietTime(Duration{}), 50ms);
  EXPECT_EQ(QuietTime(1ms), 50ms);
  EXPECT_EQ(QuietTime(33ms), 132ms);
}

}  // namespace
}  // namespace quarlin
