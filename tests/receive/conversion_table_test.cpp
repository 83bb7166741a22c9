// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/conversion_table.h"

#include <gtest/gtest.h>

namespace quarlin {
namespace {

using namespace std::string_literals;

struct Row {
  const char* what;
  std::string file;
  std::string received;
  std::string shown;
  std::vector<std::string> faults = {};
};

TEST(ConversionTableTest, ConvertsByTheLinesOfItsFile) {
  const Row rows[]{
      {"empty", "", "a\0b"s, "a\0b"s},
      {"a code, the later line", "002\tX\n2\t<STX>\r\n", "\x02\x02READ\x03", "<STX><STX>READ\x03"},
      {"hexadecimal, both ends", "&H41\t1\n&hff\t2", "A-\xFF", "1-2"},
      {"a range", "128-159\t.\n&H30-057\t#", "\x7F\x80\x9F\xA0 09:", "\x7F..\xA0 ##:"},
      {"nothing for it", "000\t\n013\t", "a\0\0b\r\n"s, "ab\n"},
      {"a text with a tab and blanks", "065\t \tb ", "A", " \tb "},
      {"UTF-8",
       "\xEF\xBB\xBF"
       "065\t\xC3\xA9\n066\t\xE2\x82\xAC",
       "AB", "\xE9?"},
      {"faulty lines are left out",
       "065\ta\n066 b\n\n256\tc\n-1\td\n&HG\te\n&H\tf\n070-069\tg\n071\t" + std::string(33, 'h') +
           "\nA\ti\n072\tok",
       "ABCFGH",
       "aBCFGok",
       {"line 2: there is no tab between code and text", "line 4: 256 is no code from 000 to 255",
        "line 5: -1 is no code from 000 to 255", "line 6: &HG is no code from 000 to 255",
        "line 7: &H is no code from 000 to 255", "line 8: 070-069 runs backwards",
        "line 9: the text has more than 32 characters", "line 10: A is no code from 000 to 255"}},
      {"a binary file",
       "\x7F"
       "ELF\x01\0\t\xFF\n"s,
       "x",
       "x",
       {"line 1: {7F}ELF{01}{00} is no code from 000 to 255"}},
  };
  for (const Row& row : rows) {
    const ConversionTable table(row.file);
    std::string room;
    EXPECT_EQ(table.Convert(row.received, room), row.shown) << row.what;
    EXPECT_EQ(table.Faults(), row.faults) << row.what;
  }
}

}  // namespace
}  // namespace quarlin
