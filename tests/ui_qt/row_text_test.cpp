#include "ui/qt/row_text.h"

#include <QTest>

#include "ui/qt/text_search.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr RowFormat plain{};
constexpr RowFormat times{.times = true};
constexpr RowFormat hex{.hex = true};
constexpr RowFormat ends{.lineEnds = true};
constexpr RowFormat all{.times = true, .hex = true, .lineEnds = true};

TextLine FirstLineOf(std::string_view text, LocalTime time = LocalTime(0s)) {
  TextRing ring;
  ring.Append(text, TextKind::Received, colors::black, time);
  return ring.Line(0);
}

}  // namespace

class RowTextTest : public QObject {
  Q_OBJECT

 private slots:
  void showsALineInEachFormat() {
    const auto time = LocalTime(10h + 2min + 3s + 45'999us);
    struct Case {
      std::string text;
      RowFormat format;
      std::string cells;
    };
    const Case cases[] = {
        {"HEL\r\n", plain, "HEL"},
        {"HEL\r\n", ends, "HEL\r\n"},
        {"HEL\r\n", times, "10:02:03.045  HEL"},
        {"HEL\r\n", hex, "48 45 4C 0D 0A  |HEL|"},
        {"\xFF", hex, "FF  |\xFF|"},
        {"A\r", all, "10:02:03.045  41 0D  |A\r|"},
        {"\n", hex, "0A  ||"},
        {"\n", plain, ""},
    };
    for (const Case& row : cases) QCOMPARE(Row(FirstLineOf(row.text, time), row.format).Cells(), row.cells);
  }

  void copiesTheBytesBehindTheCells() {
    constexpr std::size_t rest = Row::throughLineEnd;
    struct Case {
      RowFormat format;
      std::size_t begin;
      std::size_t end;
      std::string text;
      std::string bytes;
    };
    // Of "AB\x01" CR LF; as hex "41 42 01 0D 0A  |AB\x01|".
    const Case cases[] = {
        {plain, 1, 3, "B\x01", "B\x01"},
        {plain, 1, rest, "B\x01", "B\x01\r\n"},
        {plain, 3, rest, "", "\r\n"},
        {ends, 2, 4, "\x01", "\x01\r"},
        {times, 3, 15, "00:00.000  A", "A"},
        {hex, 0, 4, "41 4", "AB"},
        {hex, 2, 3, " ", ""},
        {hex, 4, 18, "2 01 0D 0A  |A", "B\x01\r\n"},
        {hex, 18, 19, "B", "B"},
        {hex, 18, rest, "B\x01|", "B\x01\r\n"},
    };
    for (const Case& copied : cases) {
      const Row row(FirstLineOf("AB\x01\r\n"), copied.format);
      QCOMPARE(row.CopiedText(copied.begin, copied.end), copied.text);
      QCOMPARE(row.CopiedBytes(copied.begin, copied.end), copied.bytes);
    }
  }

  void knowsTheColourOfEachByte() {
    TextRing ring;
    ring.Append("ab", TextKind::Received, colors::red, LocalTime(0s));
    ring.Append("cd", TextKind::Received, colors::blue, LocalTime(0s));
    const Row row(ring.Line(0), hex);  // "61 62 63 64  |abcd|"
    const std::pair<std::size_t, Color> cells[] = {
        {0, colors::red}, {4, colors::red}, {6, colors::blue}, {14, colors::red}, {16, colors::blue}};
    for (const auto& [cell, color] : cells) QCOMPARE(row.ColorAt(row.ByteAt(cell).value()), color);
    for (const std::size_t cell : {2U, 11U, 13U, 18U}) QVERIFY(!row.ByteAt(cell));
  }

  void findsAcrossTheEndsOfTheRing() {
    TextRing ring;
    ring.Append("gone\r\n", TextKind::Received, colors::black, LocalTime(0s));
    ring.Clear();  // lines are counted on: the kept ones are 1 to 3
    ring.Append("aXa Ax\r\n\xC4x\r\naaa\r\n", TextKind::Received, colors::black, LocalTime(0s));
    struct Case {
      TextQuery query;
      TextPosition from;
      std::optional<TextPosition> begin;
    };
    using enum SearchDirection;
    const Case cases[] = {
        {{"ax", Forward, false}, {1, 0}, TextPosition{1, 0}},
        {{"ax", Forward, false}, {1, 1}, TextPosition{1, 4}},
        {{"ax", Forward, false}, {2, 0}, TextPosition{1, 0}},
        {{"ax", Forward, false}, {1, 5}, TextPosition{1, 0}},   // round to what lies before it in its line
        {{"ax", Backward, false}, {1, 5}, TextPosition{1, 0}},  // ends at 6, so that one is not before 5
        {{"ax", Backward, false}, {1, 6}, TextPosition{1, 4}},
        {{"ax", Backward, false}, {1, 1}, TextPosition{1, 4}},
        {{"aa", Backward, false}, {1, 0}, TextPosition{3, 1}},
        {{"\xE4X", Forward, false}, {3, 3}, TextPosition{2, 0}},
        {{"\xE4x", Forward, true}, {3, 3}, std::nullopt},
        {{"gone", Forward, false}, {0, 0}, std::nullopt},
    };
    for (const Case& search : cases) {
      const auto match = FindText(ring, plain, search.query, search.from);
      QCOMPARE(match.has_value(), search.begin.has_value());
      if (!match) continue;
      QCOMPARE(match->begin.line, search.begin->line);
      QCOMPARE(match->begin.column, search.begin->column);
      QCOMPARE(match->end.column - match->begin.column, search.query.text.size());
    }
    QVERIFY(!FindText(TextRing(), plain, {"a"}, {}));
  }
};

}  // namespace quarlin

QTEST_APPLESS_MAIN(quarlin::RowTextTest)
#include "row_text_test.moc"
