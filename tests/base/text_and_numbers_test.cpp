// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "base/clock.h"
#include "base/numbers.h"
#include "base/program_folder.h"
#include "base/text.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::string_literals;

TEST(Numbers, BoxesHoldANumberOrCountAsZero) {
  const std::vector<std::pair<const char*, std::int32_t>> cases{
      {"12", 12},
      {" 12 ", 12},
      {"-3", -3},
      {"+3", 3},
      {"2.5", 2},
      {"3.5", 4},
      {"1e3", 1000},
      {"", 0},
      {"abc", 0},
      {"12abc", 0},
      {"--1", 0},
      {"+-1", 0},
      {"nan", 0},
      {"inf", 0},
      {"1 2", 0},
      {"0x10", 0},
      {".5", 0},
      {"-", 0},
      {"99999999999", 2147483647},
      {"-1e300", -2147483647 - 1},
      {"1e999", 2147483647},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(IntegerOf(text), value) << text;
}

TEST(Numbers, ValReadsTheBeginning) {
  const std::vector<std::pair<const char*, double>> cases{
      {"12abc", 12}, {"abc", 0}, {" 1 2", 12}, {"&H1F", 31}, {"&O17", 15}, {"", 0}, {"-1.5x", -1.5}};
  for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << text;
}

TEST(Numbers, DecimalTextsShowWhatAUserSees) {
  const std::vector<std::pair<double, const char*>> cases{
      {0, "0"},     {0.1 + 0.2, "0.3"}, {17.3, "17.3"},  {-2.5, "-2.5"},
      {100, "100"}, {1e15, "1E+15"},    {0.001, "0.001"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(DecimalText(value), text);
  EXPECT_EQ(DecimalText(2.02F), "2.02");
  EXPECT_EQ(PaddedDecimal(-7, 3), "-007");
  EXPECT_EQ(PaddedDecimal(1234, 3), "1234");
}

TEST(Text, FileTextsAreUtf8OrBytes) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"abc", "abc"},
      {"\xEF\xBB\xBFok", "ok"},
      {"12 \xC2\xB0", "12 \xB0"},
      {"12 \xB0", "12 \xB0"},            // no UTF-8: byte for byte
      {"\xE2\x82\xAC", "?"},             // a character that no byte stands for
      {"\xC0\xAF", "\xC0\xAF"},          // overlong
      {"\xED\xA0\x80", "\xED\xA0\x80"},  // half of a pair
      {"\xFF\xFE\xB0\0A\0"s,
       "\xB0"
       "A"},  // UTF-16, low byte first
      {"\xFE\xFF\0\xB0\0A"s,
       "\xB0"
       "A"},  // high byte first
      {"\xFF\xFE\x3D\xD8\0\xDE"
       "A\0"s,
       "?A"},                                              // a pair
      {"\xFE\xFF\xD8\x3D\0A\xDE\0\0B\xD8\x3D"s, "?A?B?"},  // halves of pairs
      {"\xFE\xFF\x20\xAC\0A\0"s, "?A"},                    // and half a unit
      {"\xFF\xFE", ""},
  };
  for (const auto& [content, bytes] : cases) EXPECT_EQ(BytesFromFileText(content), bytes);
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  EXPECT_EQ(BytesFromUtf8(Utf8FromBytes(all)), all);
}

TEST(Text, LinesEndInThreeWays) {
  EXPECT_EQ(SplitLines("a\r\nb\n\rc"), (std::vector<std::string>{"a", "b", "", "c"}));
  EXPECT_TRUE(SplitLines("").empty());
}

TEST(ClockTexts, DatesTimesAndMidnight) {
  using namespace std::chrono;
  const LocalTime time =
      local_days(year(2009) / 3 / 7) + hours(4) + minutes(5) + seconds(6) + milliseconds(500);
  EXPECT_EQ(DateTimeText(time), "07/03/09 04:05:06");
  EXPECT_DOUBLE_EQ(SecondsSinceMidnight(time), 14706.5);
  EXPECT_EQ(ElapsedText(hours(30) + seconds(5)), "30:00:05");
  EXPECT_DOUBLE_EQ(SecondsApart(86399, 1), 2);
  EXPECT_DOUBLE_EQ(SecondsApart(10, 12.5), 2.5);
}

TEST(ProgramFolders, NamedBesideOrTheUsersOwn) {
  TempFolder folder;
  std::map<std::string, std::string> variables{{"HOME", folder.Path() / "home"}};
  const Environment environment = [&](const char* name) { return variables[name]; };
  EXPECT_EQ(FindProgramFolder(folder.Path() / "quarlin", environment).Path(), folder.Path());
  EXPECT_EQ(FindProgramFolder("/usr/bin/quarlin", environment).Path(),
            folder.Path() / "home/.local/share/quarlin");
  variables["XDG_DATA_HOME"] = folder.Path() / "data";
  EXPECT_EQ(FindProgramFolder("/opt/q/quarlin", environment).Path(), folder.Path() / "data/quarlin");
  const std::filesystem::path installed = folder.Path() / "prefix/bin/quarlin";
  std::filesystem::create_directories(folder.Path() / "prefix/share/quarlin");
  EXPECT_EQ(FindProgramFolder(installed, environment).Path(), folder.Path() / "data/quarlin");
  EXPECT_EQ(FindSharedFolder(installed), folder.Path() / "prefix/share/quarlin");
  EXPECT_EQ(FindSharedFolder(folder.Path() / "quarlin"), folder.Path());
  variables["QUARLIN_HOME"] = folder.Path() / "named here";
  EXPECT_EQ(FindProgramFolder("/usr/bin/quarlin", environment).Path(), folder.Path() / "named here");
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path() / "named here"));
}

TEST(ProgramFolders, FilesAreFoundWithoutRegardToCase) {
  TempFolder folder;
  std::ofstream(folder.Path() / "DIALOG.TXT") << "x";
  const ProgramFolder program(folder.Path());
  EXPECT_EQ(program.File("Dialog.txt").filename(), "DIALOG.TXT");
  std::ofstream(folder.Path() / "Dialog.txt") << "y";
  EXPECT_EQ(program.File("Dialog.txt").filename(), "Dialog.txt");
  EXPECT_EQ(program.File("none.txt").filename(), "none.txt");
}

}  // namespace
}  // namespace quarlin
