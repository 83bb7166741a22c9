// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/text_ring.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <random>
#include <string>
#include <vector>

namespace quarlin {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> Texts(const TextRing& ring) {
  std::vector<std::string> texts;
  for (std::uint64_t number = ring.FirstLine(); number < ring.EndLine(); ++number) {
    texts.push_back(ring.Line(number).text);
  }
  return texts;
}

std::string ColorsOf(const TextLine& line) {
  std::string colors;
  for (const ColorRun& run : line.runs) {
    colors += std::to_string(run.begin) + ":" + std::to_string(run.color) + " ";
  }
  return colors;
}

LocalTime Second(int second) {
  return LocalTime(std::chrono::seconds(second));
}

using Strings = std::vector<std::string>;

TEST(TextRing, EndsALineWithEveryKindOfEndHoweverItIsCut) {
  const struct {
    Strings given;
    Strings expected;
  } cases[] = {
      {{"a\r\nb\nc\rd"}, {"a\r\n", "b\n", "c\r", "d"}},
      {{"a\r", "\nb"}, {"a\r\n", "b"}},
      {{"a\r", "", "\n", "\n"}, {"a\r\n", "\n"}},
      {{"a\r", "b"}, {"a\r", "b"}},
      {{"a\r", "\rb"}, {"a\r", "\r", "b"}},
      {{"\r\r\n\n"}, {"\r", "\r\n", "\n"}},
      {{"\n\r"}, {"\n", "\r"}},
      {{"a", "b", "\n"}, {"ab\n"}},
      {{std::string("\0\xFF\n\0", 4)}, {std::string("\0\xFF\n", 3), std::string(1, '\0')}},
      {{""}, {}},
      // a line is broken at 8, and its end never makes a line of its own
      {{"12345678\r\n9"}, {"12345678\r\n", "9"}},
      {{"12345678", "\r", "\n9"}, {"12345678\r\n", "9"}},
      {{"123456789\n"}, {"12345678", "9\n"}},
      {{"1234567890123456", "7"}, {"12345678", "90123456", "7"}},
  };
  for (const auto& row : cases) {
    TextRing ring({.lines = 100, .bytes = 1000, .lineLength = 8});
    for (const std::string& piece : row.given) ring.Append(piece, TextKind::Received, 0, LocalTime());
    EXPECT_EQ(Texts(ring), row.expected) << testing::PrintToString(row.given);
  }
}

TEST(TextRing, ShowsALineEndedByReturnAtOnce) {
  TextRing ring;
  ring.Append("ready\r", TextKind::Received, 0, LocalTime());
  EXPECT_EQ(ring.Line(0).visible, 5U);
  ring.Append("\n", TextKind::Received, 0, LocalTime());
  EXPECT_EQ(ring.Line(0).visible, 5U);
  EXPECT_EQ(ring.EndLine(), 1U);
}

TEST(TextRing, DatesALineByItsFirstByte) {
  TextRing ring;
  ring.Append("a\n", TextKind::Received, 0, Second(1));
  ring.Append("b", TextKind::Received, 0, Second(2));
  ring.Append("c\nd", TextKind::Received, 0, Second(3));
  EXPECT_EQ(ring.Line(0).time, Second(1));
  EXPECT_EQ(ring.Line(1).time, Second(2));
  EXPECT_EQ(ring.Line(2).time, Second(3));
}

TEST(TextRing, KeepsColoursAsRunsOfEachLine) {
  TextRing ring;
  for (const auto& [text, color] : std::vector<std::pair<std::string, Color>>{
           {"ab", 1}, {"cd", 1}, {"e", 2}, {"f\ngh\r", 3}, {"\n", 4}, {"x\ny", 5}, {"z", 0}}) {
    ring.Append(text, TextKind::Received, color, LocalTime());
  }
  EXPECT_EQ(ColorsOf(ring.Line(0)), "0:1 4:2 5:3 ");
  EXPECT_EQ(ColorsOf(ring.Line(1)), "0:3 3:4 ");
  EXPECT_EQ(ColorsOf(ring.Line(2)), "0:5 ");
  EXPECT_EQ(ColorsOf(ring.Line(3)), "0:5 1:0 ");
}

// A line has one source: a text of another one begins a line of its own, and its line feed joins no return.
TEST(TextRing, BeginsALineForEachSource) {
  using enum TextKind;
  struct Piece {
    std::string text;
    TextKind kind;
  };
  const struct {
    std::vector<Piece> given;
    std::string expected;  // "who:text|" of each line
  } cases[] = {
      {{{"READ", Sent}, {"12.5\r\n", Received}}, ">:READ|<:12.5\r\n|"},
      {{{"12", Received}, {"STOP\r", Sent}, {".5\r", Received}}, "<:12|>:STOP\r|<:.5\r|"},
      {{{"A\r", Sent}, {"\nB", Received}}, ">:A\r|<:\n|<:B|"},
      {{{"12", Received}, {"TIME OUT\r\n", Error}, {"TIME :1\r\n", Own}},
       "<:12|!:TIME OUT\r\n|-:TIME :1\r\n|"},
      {{{"-->12:00 ", SentStamp},
        {"READ", Sent},
        {"\r\n", SentBreak},
        {"5", Received},
        {"\r\n", ReceivedBreak}},
       ">:-->12:00 READ\r\n|<:5\r\n|"},
  };
  for (const auto& row : cases) {
    TextRing ring;
    for (const Piece& piece : row.given) ring.Append(piece.text, piece.kind, 0, LocalTime());
    std::string lines;
    for (std::uint64_t n = 0; n < ring.EndLine(); ++n) {
      lines += "-!<>"[static_cast<int>(ring.Line(n).Whose())] + (":" + ring.Line(n).text + "|");
    }
    EXPECT_EQ(lines, row.expected);
  }
}

TEST(TextRing, TellsTheTimeSinceTheRequestAlsoWhenThatIsGone) {
  TextRing ring({.lines = 3, .bytes = 1000, .lineLength = 100});
  ring.Append("too early\n", TextKind::Received, 0, Second(1));
  EXPECT_FALSE(ring.Line(0).sinceRequest);
  ring.Append("READ\n", TextKind::Sent, 0, Second(2));
  EXPECT_FALSE(ring.Line(1).sinceRequest);
  ring.Append("5\n", TextKind::Received, 0, Second(2) + 12'340us);
  EXPECT_EQ(ring.Line(2).sinceRequest, 12'340us);
  ring.Append("6\n7\n", TextKind::Received, 0, Second(9));
  ASSERT_FALSE(ring.Keeps(ring.LastSentLine()));
  EXPECT_EQ(ring.Line(4).sinceRequest, 7s);
  ring.Append("8\n", TextKind::Received, 0, Second(100'000));
  EXPECT_FALSE(ring.Line(5).sinceRequest);
}

TEST(TextRing, LetsWholeOldLinesGo) {
  const TextRing::Limits limits{.lines = 3, .bytes = 12, .lineLength = 8};
  const struct {
    Strings given;
    std::uint64_t first;
    Strings expected;
  } cases[] = {
      {{"1\n2\n3\n"}, 0, {"1\n", "2\n", "3\n"}},
      {{"1\n2\n3\n", "4"}, 1, {"2\n", "3\n", "4"}},
      {{"12345\n", "67890\n"}, 0, {"12345\n", "67890\n"}},
      {{"12345\n", "67890\n", "\n"}, 1, {"67890\n", "\n"}},
      {{"12345\n", "67890", "1"}, 0, {"12345\n", "678901"}},
      {{"12345\n", "67890", "12"}, 1, {"6789012"}},
      {{"1\n2\n", "3456", "7890123"}, 2, {"34567890", "123"}},
  };
  for (const auto& row : cases) {
    TextRing ring(limits);
    for (const std::string& piece : row.given) ring.Append(piece, TextKind::Received, 0, LocalTime());
    EXPECT_EQ(Texts(ring), row.expected) << testing::PrintToString(row.given);
    EXPECT_EQ(ring.FirstLine(), row.first) << testing::PrintToString(row.given);
  }
}

TEST(TextRing, KnowsOnlyKeptLinesAndCountsOnWhenCleared) {
  TextRing ring({.lines = 2, .bytes = 100, .lineLength = 50});
  ring.Append("a\nb\nc\r", TextKind::Received, 7, Second(1));
  for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{3}, ~std::uint64_t{0}}) {
    EXPECT_EQ(ring.Line(number).text, "");
    EXPECT_TRUE(ring.Line(number).runs.empty());
  }
  const std::uint64_t revision = ring.Revision();
  ring.Clear();
  EXPECT_NE(ring.Revision(), revision);
  EXPECT_EQ(ring.FirstLine(), 3U);
  EXPECT_EQ(ring.EndLine(), 3U);
  EXPECT_EQ(ring.Bytes(), 0U);
  ring.Append("new", TextKind::Received, 8, Second(2));
  EXPECT_EQ(ring.Line(3).text, "new");
  EXPECT_EQ(ColorsOf(ring.Line(3)), "0:8 ");
}

// The whole stream as a plain list of lines, each byte with its colour.
class Model {
 public:
  explicit Model(std::size_t lineLength) : lineLength_(lineLength) {}

  void Append(const std::string& text, Color color) {
    for (const char c : text) Add(c, color);
  }

  Strings lines;
  std::vector<std::vector<Color>> colors;

 private:
  void Add(char c, Color color) {
    const bool isEnd = c == '\r' || c == '\n';
    const bool joins = c == '\n' && afterReturn_;
    const bool breaks = !isEnd && !lines.empty() && lines.back().size() == lineLength_;
    if (!joins && (ended_ || breaks)) {
      lines.emplace_back();
      colors.emplace_back();
    }
    lines.back() += c;
    colors.back().push_back(color);
    ended_ = isEnd;
    afterReturn_ = c == '\r';
  }

  std::size_t lineLength_;
  bool ended_ = true;
  bool afterReturn_ = false;
};

std::vector<Color> Painted(const TextLine& line) {
  std::vector<Color> colors;
  for (std::size_t i = 0; i < line.runs.size(); ++i) {
    const std::size_t end = i + 1 < line.runs.size() ? line.runs[i + 1].begin : line.text.size();
    colors.resize(end, line.runs[i].color);
  }
  return colors;
}

// Small limits, and limits under which the text wraps around its blocks of memory many times.
TEST(TextRing, AgreesWithAPlainListOverRandomText) {
  const TextRing::Limits limitsOf[] = {
      {.lines = 5, .bytes = 60, .lineLength = 7},
      {.lines = 1, .bytes = 12, .lineLength = 10},
      {.lines = 100'000, .bytes = 150'000, .lineLength = 900},
      {.lines = 300, .bytes = 1'000'000, .lineLength = 4096},
  };
  std::mt19937 random(1);
  const auto below = [&](std::size_t end) { return random() % end; };
  for (const TextRing::Limits& limits : limitsOf) {
    TextRing ring(limits);
    Model model(limits.lineLength);
    for (int piece = 0; piece < 400; ++piece) {
      std::string text(below(4 * limits.lineLength), ' ');
      for (char& c : text) c = below(limits.lineLength) == 0 ? "\r\n"[below(2)] : static_cast<char>(random());
      const auto color = static_cast<Color>(below(3));
      ring.Append(text, TextKind::Received, color, LocalTime());
      model.Append(text, color);
      ASSERT_LE(ring.Bytes(), limits.bytes);
      ASSERT_LE(ring.EndLine() - ring.FirstLine(), limits.lines);
      ASSERT_EQ(ring.EndLine(), model.lines.size());
      const bool checksAll = piece % 40 == 39;
      for (std::uint64_t n = checksAll ? ring.FirstLine() : ring.EndLine(); n < ring.EndLine(); ++n) {
        ASSERT_EQ(ring.Line(n).text, model.lines[n]);
        ASSERT_EQ(Painted(ring.Line(n)), model.colors[n]);
      }
    }
    ASSERT_GT(ring.FirstLine(), 0U);
    const bool oneMoreLineFits = ring.EndLine() - ring.FirstLine() < limits.lines &&
                                 ring.Bytes() + model.lines[ring.FirstLine() - 1].size() <= limits.bytes;
    EXPECT_FALSE(oneMoreLineFits);
  }
}

std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// Sanitized builds have a heap of their own that does not tell its size; there the test says nothing.
TEST(TextRing, TakesLittleAtFirstAndNeverMoreThanItsBound) {
  const struct {
    std::string name;
    std::string line;
    bool colorful;
    std::size_t mebibytes;
  } floods[] = {
      {"lines", std::string(345, 'x') + "\r\n", false, 35},
      {"empty lines", "\n", false, 3},
      {"no line end", "x", false, 33},
      {"a colour for each byte", "x", true, 3},
      {"empty lines in colours", "\n", true, 4},
  };
  for (const auto& flood : floods) {
    std::string piece;
    while (piece.size() < 65'536) piece += flood.line;
    const std::size_t before = HeapInUse();
    std::size_t most = 0;
    TextRing ring;
    ring.Append("hello\r\n", TextKind::Received, 0, LocalTime());
    EXPECT_LE(HeapInUse() - before, std::size_t{100} << 10) << flood.name;
    for (int i = 0; i < 600; ++i) {
      if (flood.colorful) {
        for (int k = 0; k < 2000; ++k)
          ring.Append(std::string_view(piece).substr(0, 1), TextKind::Received, k, LocalTime());
      } else {
        ring.Append(piece, TextKind::Received, 0, LocalTime());
      }
      most = std::max(most, HeapInUse() - before);
    }
    EXPECT_LE(most, flood.mebibytes << 20) << flood.name;
    EXPECT_GT(ring.FirstLine(), 0U) << flood.name;
    ring.Clear();
    EXPECT_LE(HeapInUse() - before, std::size_t{100} << 10) << flood.name;
  }
}

}  // namespace
}  // namespace quarlin
