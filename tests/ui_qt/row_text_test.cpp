// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/row_text.h"

#include <QElapsedTimer>
#include <QTest>
#include <optional>
#include <string>
#include <vector>

#include "ui/qt/text_search.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr RowFormat plain{};
constexpr RowFormat codes{.codes = true};
constexpr RowFormat hex{.hex = true, .hexBytes = 8};

struct Piece {
  std::string text;
  TextKind kind = TextKind::Received;
};

TextLine LineOf(const std::vector<Piece>& pieces) {
  TextRing ring;
  for (const Piece& piece : pieces) ring.Append(piece.text, piece.kind, colors::black, LocalTime(0s));
  return ring.Line(0);
}

// The characters of the rows, with "|" between them.
std::string Text(const LineRows& rows) {
  std::string text;
  for (std::size_t row = 0; row < rows.Count(); ++row) {
    if (row > 0) text += '|';
    for (const Cell& cell : rows.Row(row)) text += cell.look == Cell::Look::Break ? '$' : cell.character;
  }
  return text;
}

}  // namespace

class RowTextTest : public QObject {
  Q_OBJECT

 private slots:
  // What was never on the wire is no hex, and counting rows agrees with laying them.
  void laysALineInEachFormat() {
    using enum TextKind;
    constexpr RowFormat wrapped{.wrapAt = 4};
    constexpr RowFormat wrappedCodes{.codes = true, .wrapAt = 7};
    struct Case {
      std::vector<Piece> line;
      RowFormat format;
      std::string rows;
    };
    const std::vector<Piece> stamped{{"-->12 ", SentStamp}, {"AB", Sent}, {"\r\n", SentBreak}};
    const Case cases[] = {
        {{{"HEL\r\n"}}, plain, "HEL"},
        {{{"\n"}}, plain, ""},
        {{{"A\x02\x9F\r\n"}}, codes, "A<STX><9F><CR><LF>"},
        {{{"<STX>"}}, codes, "<STX>"},
        {{{"late\r\n", Error}}, codes, "late"},
        {{{"5"}, {"\r\n", ReceivedBreak}}, codes, "5$"},
        {{{"\r\n", ReceivedBreak}}, codes, "$"},
        {{{"\r\n", ReceivedBreak}}, hex, ""},
        {{{"HEL\x02\r\n"}}, hex, "0000  48 45 4C 02 0D 0A        |HEL...|"},
        {{{"12345678\xFF"}},
         hex,
         "0000  31 32 33 34 35 36 37 38  |12345678||0008  FF                       |\xFF|"},
        {stamped, plain, "-->12 AB"},
        {stamped, hex, "0000  41 42                    |AB|"},
        {{{"TIME OUT\r\n", Error}}, hex, "TIME OUT"},
        {{{"12345678"}}, wrapped, "1234|5678"},
        {{{"123456789"}}, wrapped, "1234|5678|9"},
        {{{"123\x02\x03"}}, wrappedCodes, "123|<STX>|<ETX>"},
        {{{"12\x02"}}, wrappedCodes, "12<STX>"},
    };
    for (const Case& row : cases) {
      const TextLine line = LineOf(row.line);
      const LineRows rows(line, row.format);
      QCOMPARE(Text(rows), row.rows);
      QCOMPARE(RowCount(line, row.format), static_cast<std::uint32_t>(rows.Count()));
      if (row.format.wrapAt == 0 && rows.Count() == 1 && !row.format.hex) {
        QCOMPARE(LineWidth(line, row.format), rows.Row(0).size());
      }
    }
    QCOMPARE(LineRows(LineOf({{std::string(16, 'x')}}), {.hex = true}).Row(0).size(), HexWidth(16));
  }

  // A name is one byte wherever it is hit; beside the text a row has its own ends.
  void findsTheByteAtAPlace() {
    struct Case {
      std::string text;
      RowFormat format;
      std::size_t row;
      double cells;
      std::size_t byte;
      std::size_t edge;
    };
    const Case cases[] = {
        {"AB", plain, 0, -0.4, 0, 0},
        {"AB", plain, 0, 0.6, 0, 1},
        {"AB", plain, 0, 9.0, 2, 2},
        {"A\x02"
         "B",
         codes, 0, 1.2, 1, 1},
        {"A\x02"
         "B",
         codes, 0, 5.8, 1, 2},
        {"A\x02"
         "B",
         codes, 0, 6.2, 2, 2},
        {"ABC", hex, 0, 2.0, 0, 0},
        {"ABC", hex, 0, 9.2, 1, 1},
        {"ABC", hex, 0, 11.4, 1, 2},
        {"ABC", hex, 0, 33.9, 1, 2},
        {"123456789", hex, 0, 99.0, 8, 8},
        {"123456789", {.wrapAt = 4}, 1, 99.0, 8, 8},
    };
    for (const Case& hit : cases) {
      const LineRows rows(LineOf({{hit.text}}), hit.format);
      QCOMPARE(rows.ByteAt(hit.row, hit.cells), hit.byte);
      QCOMPARE(rows.EdgeAt(hit.row, hit.cells), hit.edge);
    }
    const LineRows::Place place = LineRows(LineOf({{"123456789"}}), {.wrapAt = 4}).PlaceOf(6);
    QCOMPARE(place.row, 1U);
    QCOMPARE(place.cell, 2U);
  }

  void writesALineAsItIsShown() {
    TextRing ring;
    const auto time = LocalTime(10h + 2min + 3s + 45'999us);
    ring.Append("READ\r", TextKind::Sent, colors::blue, time);
    ring.Append(
        "\x02"
        "5\r",
        TextKind::Received, colors::black, time + 12'340us);
    ring.Append("LATE\r\n", TextKind::Error, colors::red, time + 75s);
    struct Case {
      std::uint64_t line;
      RowFormat format;
      TimeColumn times;
      QString text;
    };
    const Case cases[] = {
        {0, plain, TimeColumn::Clock, "10:02:03.045  → READ"},
        {0, plain, TimeColumn::SinceRow, "→ READ"},
        {1, codes, TimeColumn::SinceRow, "← <STX>5<CR>   || DIFF : 12.3 ms"},
        {1, plain, TimeColumn::SinceRequest, "← \u24025 || LAST ||     12.3 ms"},
        {2, plain, TimeColumn::SinceRequest, "  LATE || LAST ||     00:01:15"},
        {1, hex, TimeColumn::Off, "← 0000  02 35 0D                 |.5.|"},
    };
    for (const Case& row : cases) {
      const auto before = row.line == 0 ? std::nullopt : std::optional(ring.TimeOf(row.line - 1));
      QCOMPARE(ShownLine(ring.Line(row.line), row.format, row.times, before), row.text);
    }
  }

  void findsAcrossTheEndsOfTheRing() {
    TextRing ring;
    const auto add = [&](std::string_view text) {
      ring.Append(text, TextKind::Received, colors::black, LocalTime(0s));
    };
    add("gone\r\n");
    ring.Clear();  // lines are counted on: the kept ones are 1 to 3
    add("aXa Ax\r\n\xC4x\r\naaa\x02\r\n");
    using enum SearchDirection;
    struct Case {
      TextQuery query;
      SearchDirection direction;
      TextPosition from;
      std::optional<TextPosition> begin;
    };
    const TextQuery sensitive{"\u00E4x", true};
    const TextQuery expression{"a+$", false, true};
    const Case cases[] = {
        {{"ax"}, Forward, {1, 0}, TextPosition{1, 0}},
        {{"ax"}, Forward, {1, 1}, TextPosition{1, 4}},
        {{"ax"}, Forward, {2, 0}, TextPosition{1, 0}},
        {{"ax"}, Forward, {1, 5}, TextPosition{1, 0}},   // round to what lies before it in its line
        {{"ax"}, Backward, {1, 5}, TextPosition{1, 0}},  // ends at 6, so that one is not before 5
        {{"ax"}, Backward, {1, 6}, TextPosition{1, 4}},
        {{"aa"}, Backward, {1, 0}, TextPosition{3, 0}},
        {{"\u00E4X"}, Forward, {3, 3}, TextPosition{2, 0}},
        {sensitive, Forward, {3, 3}, std::nullopt},
        {{"gone"}, Forward, {0, 0}, std::nullopt},
        {{"\u20AC"}, Forward, {1, 0}, std::nullopt},
        {{"a<STX>", false, false, true}, Forward, {1, 0}, TextPosition{3, 2}},
        {{"<cr>"}, Forward, {1, 0}, std::nullopt},
        {{"61 02 0d", false, false, false, true}, Forward, {1, 0}, TextPosition{3, 2}},
        {{"\\bax", false, true}, Forward, {1, 1}, TextPosition{1, 4}},
        {{"x*", false, true}, Forward, {1, 2}, TextPosition{1, 5}},  // an empty match is none
        {{"(", false, true}, Forward, {1, 0}, std::nullopt},
    };
    for (const Case& search : cases) {
      const auto match =
          FindText(ring, RowMap(), TextMatcher(search.query), search.from, search.direction, 10s);
      QVERIFY2(match.has_value() == search.begin.has_value(), qPrintable(search.query.text));
      if (match) QCOMPARE(match->begin, *search.begin);
    }
    QCOMPARE(TextMatcher({"a(b", false, true}).Error(),
             QString("missing closing parenthesis, at character 4"));
  }

  void countsWhileLinesComeAndGo() {
    TextRing ring;
    const TextMatcher matcher({"ab"});
    MatchCount count;
    const auto add = [&](std::string_view text) {
      ring.Append(text, TextKind::Received, colors::black, LocalTime(0s));
      return count.Update(ring, RowMap(), matcher, 10s) ? count.Count() : 0;
    };
    QCOMPARE(add("abab\r\nxa"), 2U);
    QCOMPARE(add("b\r\n"), 3U);  // the line has grown
    QCOMPARE(count.NumberOf(ring, matcher, {{1, 1}, {1, 3}}), 3U);
    QCOMPARE(count.NumberOf(ring, matcher, {{1, 0}, {1, 2}}), 0U);
    for (int i = 0; i < 100; ++i) add(std::string(2000, '\n'));
    QCOMPARE(add("ab"), 1U);
    ring.Clear();
    QCOMPARE(add("x"), 0U);
  }

  // Expressions exist that would take years; the window waits for a moment at the most.
  void endsAnEndlessExpression() {
    TextRing ring;
    for (int i = 0; i < 2000; ++i) {
      ring.Append(std::string(3000, 'a') + "\n", TextKind::Received, colors::black, LocalTime(0s));
    }
    QElapsedTimer taken;
    taken.start();
    QVERIFY(!FindText(ring, RowMap(), TextMatcher({"(a|aa)+$x", false, true}), {}, SearchDirection::Forward,
                      100ms));
    QVERIFY(taken.elapsed() < 5000);
  }
};

}  // namespace quarlin

QTEST_APPLESS_MAIN(quarlin::RowTextTest)
#include "row_text_test.moc"
