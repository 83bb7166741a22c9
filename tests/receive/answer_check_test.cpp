// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/answer_check.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quarlin {
namespace {

struct Row {
  std::string text;
  std::int32_t length;
  std::optional<std::string> same;
  std::optional<Finding> objection;
};

TEST(AnswerCheck, TheLengthIsAskedBeforeTheText) {
  const std::vector<Row> rows{
      {"12.5 kg\r\n", 0, std::nullopt, std::nullopt},
      {"12.5 kg\r\n", 9, "12.5 kg\r\n", std::nullopt},
      {"12.5 kg\r\n", 8, "x",
       Finding{Verdict::WrongLength, "9 characters instead of 8", "8 characters", "9 characters"}},
      {"12.5 kg\r\n", -1, "x",
       Finding{Verdict::WrongLength, "9 characters instead of -1", "-1 characters", "9 characters"}},
      {"OK\r\n", 0, "Ok\r\n",
       Finding{Verdict::NotEqual, "\"OK{0D}{0A}\" instead of \"Ok{0D}{0A}\"", "Ok\r\n", "OK\r\n"}},
      {std::string(61, 'x'), 0, "",
       Finding{Verdict::NotEqual, "\"" + std::string(60, 'x') + "...\" instead of \"\"", "",
               std::string(61, 'x')}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    AnswerRules rules{row.length, std::nullopt};
    if (row.same) rules.same = *row.same;
    EXPECT_EQ(CheckAnswer(row.text, rules), row.objection);
  }
}

TEST(AnswerCheck, AWrongSumIsQuotedWithCodes) {
  EXPECT_EQ(CheckAnswerSum("READ\x92\r\n", "READ\x92", 5), std::nullopt);
  const auto objection = CheckAnswerSum("READ\x01\r\n", "READ\x01", 5);
  ASSERT_TRUE(objection);
  EXPECT_EQ(objection->detail, "{01} received, \x92 computed");
}

}  // namespace
}  // namespace quarlin
