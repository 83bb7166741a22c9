// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/table_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace quarlin {
namespace {

using namespace std::string_literals;

struct NumberCase {
  std::string text;
  std::vector<double> numbers;
  std::string unit;  // of the first one
};

TEST(NumberText, ReadsNumbersAsInstrumentsAndPeopleWriteThem) {
  const std::vector<NumberCase> cases{
      {"12.5", {12.5}, ""},
      {"ST,GS,+00012.346 kg\r\n", {12.346}, "kg"},
      {"-  12.5g", {-12.5}, "g"},
      {"\x02N-000.50\xB0"
       "C\x03",
       {-0.5},
       "\xB0"
       "C"},
      {"\xE2\x88\x92"
       "12,5 %",
       {-12.5},
       "%"},
      {"  123. kg", {123}, "kg"},
      {"12.345 kg476B", {12.345, 476}, "kg"},
      {"5 kgDBEF", {5}, "kg"},
      {"5 VDC", {5}, "VDC"},
      {".5 -.25", {0.5, -0.25}, ""},
      {"No.5", {5}, ""},
      {"1,234.5", {1234.5}, ""},
      {"-1.234.567,25 mg", {-1234567.25}, "mg"},
      {"1.234.567", {1234567}, ""},
      {"12,5", {12.5}, ""},
      {"0,123", {0.123}, ""},
      {"1234,567", {1234.567}, ""},
      {"1.5e3 2,5E-2 7e 1e-999", {1500, 0.025, 7, 0}, ""},
      {"12.5m3", {12.5, 3}, "m3"},
      {"12.5;13,7;-1", {12.5, 13.7, -1}, ""},
      {"1,2,3 4", {1, 2, 3, 4}, ""},
      {"12.5,13.1,-0.2", {12.5, 13.1, -0.2}, ""},
      {"+00012.3-00001.2", {12.3, -1.2}, ""},
      {"----- 12", {12}, ""},
      {"0x1F 2 &H3A", {2}, ""},
      {"22.11.2026 192.168.1.5 7", {7}, ""},
      {"1e999 NaN inf OVER ----- - + . , 0x", {0}, "x"},
      {"", {}, ""},
  };
  for (const auto& [text, expected, unit] : cases) {
    NumberScanner scanner(text);
    std::vector<double> found;
    std::string foundUnit;
    while (const auto number = scanner.Next()) {
      if (found.empty()) foundUnit = number->unit;
      found.push_back(number->value);
    }
    EXPECT_EQ(found, expected) << text;
    EXPECT_EQ(foundUnit, unit) << text;
  }
}

TEST(NumberText, AChosenDecimalSignLeavesNoDoubt) {
  EXPECT_EQ(LeadingNumber("1,234", DecimalSign::Point)->value, 1234);
  EXPECT_EQ(LeadingNumber("1,234", DecimalSign::Comma)->value, 1.234);
  EXPECT_EQ(LeadingNumber("1.234", DecimalSign::Comma)->value, 1234);
  EXPECT_EQ(LeadingNumber("10,20", DecimalSign::Point)->value, 10);
  EXPECT_EQ(LeadingNumber("100.125,250.25", DecimalSign::Point)->value, 100.125);
  EXPECT_FALSE(LeadingNumber("12.5", DecimalSign::Comma));
  EXPECT_FALSE(LeadingNumber("kg 12.5"));
}

TEST(NumberRule, FindsTheNumberThatIsMeant) {
  const auto read = [](const NumberRule& rule, std::string_view text, char separator = ';') {
    const auto number = NumberReader(rule).Read(text, separator);
    return number ? number->value : gapValue;
  };
  const auto group = [](std::string expression) {
    return NumberRule{.kind = NumberRule::Kind::Group, .expression = std::move(expression)};
  };
  const auto column = [](int place) { return NumberRule{.kind = NumberRule::Kind::Column, .place = place}; };
  EXPECT_EQ(read({.place = 2}, "G 12.5 kg T 0.5 kg"), 0.5);
  EXPECT_EQ(read({.place = 2}, "10,20", ','), 20);
  EXPECT_EQ(read({.place = 2}, "\"1,5\",\"2,5\"", ','), 2.5);
  EXPECT_EQ(read(group("(T|G) +(?<value>\\S+)"), "T 0.5 kg"), 0.5);
  EXPECT_EQ(read(group("net (\\S+)"), "gross 2 net 1.5"), 1.5);
  EXPECT_EQ(read(group("[-+]\\d+"), "1 -2"), -2);
  EXPECT_TRUE(std::isnan(read(group("T(?<value>x)?"), "T 5")));
  EXPECT_TRUE(std::isnan(read(group("(a+)+$"), std::string(5000, 'a') + "b")));  // would take for ever
  EXPECT_EQ(read(column(3), "a;\"x;y\";\"7,5 kg\""), 7.5);
  EXPECT_EQ(read(column(2), "  a \t 7", ' '), 7);
  EXPECT_TRUE(std::isnan(read(column(2), "1;x 2")));
  for (const NumberRule& wrong : {NumberRule{.place = 0}, column(-1), group("(a"), group("")}) {
    EXPECT_THROW(NumberReader{wrong}, std::invalid_argument);
  }
}

TableReader Read(std::string_view text, TableSettings settings = {}, std::size_t piece = 1 << 20) {
  TableReader reader(std::move(settings));
  for (std::size_t at = 0; at < text.size(); at += piece) reader.Take(text.substr(at, piece));
  reader.Finish();
  return reader;
}

std::string Show(const Series& series) {
  std::string text = series.name + "[" + series.unit + "]";
  for (std::size_t i = 0; i < series.Size(); ++i) {
    const Point point = series.At(i);
    std::array<char, 64> shown{};
    std::snprintf(shown.data(), shown.size(), std::isnan(point.value) ? " %g:-" : " %g:%.10g", point.time,
                  point.value);
    text += shown.data();
  }
  return text;
}

TableSettings Columns(const std::vector<int>& places, int timeColumn = 0) {
  TableSettings settings;
  settings.rules.clear();
  for (const int place : places) settings.rules.push_back({.kind = NumberRule::Kind::Column, .place = place});
  if (timeColumn > 0) settings.time = TableSettings::Time::Column;
  settings.timeColumn = timeColumn;
  return settings;
}

struct TableCase {
  std::string text;
  TableSettings settings;
  std::string curves;  // one a line
};

TEST(TableReader, ReadsTheTablesThatThereAre) {
  const std::vector<TableCase> cases{
      {"1\n\n2.5 kg\r\n-3\r4", {}, "Number[kg] 0:1 1:2.5 2:-3 3:4\n"},
      {"\xEF\xBB\xBF"
       "Weight [kg]\n12,5\n13\n",
       {},
       "Weight[kg] 0:12.5 1:13\n"},
      {"time;net;gross (g)\n0,5;1,25;2\n1;2,5;x\n", Columns({2, 3}, 1),
       "net[] 0.5:1.25 1:2.5\ngross[g] 0.5:2 1:-\n"},
      {"time,value\n0,100\n1,101\n", Columns({2}, 1), "value[] 0:100 1:101\n"},
      {"a,b\n\"1,5\",\"2\"\"\"\n\"2,5\",3\n", Columns({1, 2}), "a[] 0:1.5 1:2.5\nb[] 0:2 1:3\n"},
      {"1 2\t3\n4  5 6\n", Columns({3}), "Column 3[] 0:3 1:6\n"},
      {"23:59:59.5;1\n00:00:00,25;2\n", Columns({2}, 1), "Column 2[] 0:1 0.75:2\n"},
      {"2026-11-22T10:00:00+01:00;1\n2026-11-22T09:00:01Z;2\n22/11/26 09:00:03;3\n", Columns({2}, 1),
       "Column 2[] 0:1 1:2 3:3\n"},
      {"22.11.2026 10:00:00 7\n22.11.2026 10:00:02 8\n", Columns({3}, 1), "Column 3[] 0:7 2:8\n"},
      {"2026-11-22 10:00:00.000 -> READ{0D}{0A}\r\n2026-11-22 10:00:00.135 <- {02}12.346 kg{0D}{0A}\r\n"
       "2026-11-22 10:00:01.135 <- {02}12.350 kg{0D}{0A}\r\n",
       {.time = TableSettings::Time::Column},
       "Number[kg] 0:12.346 1:12.35\n"},
      {"-->22/11/26 10:00:00\r\n5 g\r\n-->22/11/26 10:00:01\r\n6 g\r\n", {}, "Number[g] 0:5 1:6\n"},
      {"OVER\n1\n", {}, "Number[] 0:- 1:1\n"},
      {"", {}, "Number[]\n"},
  };
  for (const auto& [text, settings, expected] : cases) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{1} << 20}) {
      std::string shown;
      const TableReader reader = Read(text, settings, piece);
      for (const Series& curve : reader.Curves()) shown += Show(curve) + "\n";
      EXPECT_EQ(shown, expected) << text;
    }
  }
}

// "1,234" is read as the file's other numbers say, and not at all where they leave it open.
TEST(TableReader, AValueIsNeverAThousandTimesTooLarge) {
  const std::vector<TableCase> cases{
      {"1,234\n2,345\n", {}, "Number[] 0:1.234 1:2.345"},
      {"1,234.5\n1,234\n999\n", {}, "Number[] 0:1234.5 1:1234 2:999"},
      {"1,234\n1,234,567\n", {}, "Number[] 0:1234 1:1234567"},
      {"1,234\n12,5\n", {}, "Number[] 0:1.234 1:12.5"},
      {"12.5\n12,5\n", {}, "Number[] 0:12.5 1:12.5"},
      {"12.498\n12.5\n12,502\n12,51\n", {}, "Number[] 0:12.498 1:12.5 2:12.502 3:12.51"},
      {"12.5\n12,502\n", {}, "Number[] 0:12.5 1:-"},
      {"1.234\n1,234\n", {}, "Number[] 0:1.234 1:-"},
      {"1,234.5\n12,5\n1,234\n", {}, "Number[] 0:1234.5 1:12.5 2:-"},
  };
  for (const auto& [text, settings, expected] : cases) {
    EXPECT_EQ(Show(Read(text, settings).Curves()[0]), expected) << text;
  }
}

TEST(TableReader, NamesTheFirstTenRowsWithoutANumber) {
  std::string text = "value\n";
  for (int i = 2; i <= 31; ++i) text += i % 2 == 0 ? "OVER\t" + std::string(200, '-') + "\r\n" : "7\n";
  const TableReader reader = Read(text);
  EXPECT_EQ(reader.Rows(), 30u);
  EXPECT_EQ(reader.Numbers(), 15u);
  EXPECT_EQ(reader.BadRows(), 15u);
  ASSERT_EQ(reader.FirstBadRows().size(), 10u);
  EXPECT_EQ(reader.FirstBadRows()[9].line, 20u);
  EXPECT_EQ(reader.FirstBadRows()[0].text.substr(0, 10), "OVER{09}--");
  EXPECT_LT(reader.FirstBadRows()[0].text.size(), 80u);
  EXPECT_EQ(reader.FirstBadRows()[0].reason, "no number");
}

TEST(TableReader, TimesThatAreMissingOrRunBackAreBadRows) {
  const TableReader reader = Read("1;10\n3;11\n2;12\nx;13\n4;14\n", Columns({2}, 1));
  EXPECT_EQ(Show(reader.Curves()[0]), "Column 2[] 1:10 3:11 3:- 3:- 4:14");
  ASSERT_EQ(reader.FirstBadRows().size(), 2u);
  EXPECT_EQ(reader.FirstBadRows()[0].reason, "its time lies before that of the row above");
  EXPECT_EQ(reader.FirstBadRows()[1].reason, "no time in column 1");
}

TEST(TableReader, SurvivesWhatIsNoTable) {
  EXPECT_TRUE(Read("\x7f"
                   "ELF\0\0 12\n"s)
                  .LooksBinary());
  std::string endless = "5 ";
  endless.append(3'000'000, '7');  // its half number is not read
  const TableReader reader = Read("1\n" + endless + "\n6\n", {.rules = {{}, {.place = 2}}}, 1000);
  EXPECT_EQ(reader.CutLines(), 1u);
  EXPECT_EQ(Show(reader.Curves()[0]), "Number[] 0:1 1:5 2:6");
  EXPECT_EQ(Show(reader.Curves()[1]), "Number 2[] 0:- 1:- 2:-");
  for (const TableSettings& wrong :
       {TableSettings{.rules = {}}, TableSettings{.rules = std::vector<NumberRule>(9)},
        TableSettings{.time = TableSettings::Time::Rate, .rate = 0}, Columns({1, 0})}) {
    EXPECT_THROW(TableReader{wrong}, std::invalid_argument);
  }
}

}  // namespace
}  // namespace quarlin
