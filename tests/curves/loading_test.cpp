// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/loading.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "curves/load_choice.h"
#include "data/table_preview.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

class LoadingTest : public testing::Test {
 protected:
  void Begin(std::unique_ptr<ByteSource> source, TableSettings settings = {}) {
    loading_.emplace(loop_, std::move(source), std::move(settings));
    loading_->OnProgress = [this](int thousandths) { progress_.push_back(thousandths); };
    loading_->OnEnd = [this](LoadedNumbers numbers) { ended_ = std::move(numbers); };
  }

  std::string SummaryOf(std::string text) {
    Begin(MakeTextSource("the text", std::move(text)));
    loop_.Pass(std::chrono::seconds(1));
    return std::exchange(ended_, std::nullopt)->summary;
  }

  VirtualLoop loop_;
  TempFolder folder_;
  std::optional<Loading> loading_;
  std::vector<int> progress_;
  std::optional<LoadedNumbers> ended_;
};

TEST_F(LoadingTest, SaysWhatWasReadAndWhatWasNot) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"1\n2", "2 numbers in 2 rows"},
      {"1\nOVER\n", "1 number in 2 rows; 1 row lacks one: line 2 \"OVER\""},
      {"12.5\n12,502\n",
       "1 number in 2 rows; 1 row lacks one: line 2 \"12,502\" (its point or comma may be a decimal "
       "sign or one for thousands)"},
      {"abc", "no number in the 1 row of the text; 1 row lacks one: line 1 \"abc\""},
      {"1 kg\n2\n1000 g\n2 kg\n", "4 numbers in 4 rows; the unit changes from kg to g in line 3"},
      {"\n\n", "no number in the 0 rows of the text"},
      {"", "the text is empty"},
      {"\xFF\xFE"
       "1",
       "the text is written in UTF-16; save it as UTF-8 and open it again"},
      {std::string("1\0", 2), "the text is no text: it holds bytes 0"},
  };
  for (const auto& [text, summary] : cases) EXPECT_EQ(SummaryOf(text), summary);
  std::string many;
  for (int i = 0; i < 1500; ++i) many += i < 1488 ? "1\n" : "-\n";
  EXPECT_TRUE(
      SummaryOf(many).starts_with("1,488 numbers in 1,500 rows; 12 rows lack one: line 1489 \"-\", "));
  EXPECT_TRUE(SummaryOf(many).ends_with("line 1498 \"-\", ..."));
}

TEST_F(LoadingTest, AFileIsReadInSlicesAsFarAsItReachedAtTheBeginning) {
  const std::filesystem::path file = folder_.Path() / "long.txt";
  std::ofstream(file) << "1" << std::string(3 << 20, '\n') << "2\n";
  Begin(OpenFileSource(file).source);
  std::ofstream(file, std::ios::app) << "3\n";
  loop_.Pass(std::chrono::seconds(1));
  EXPECT_GE(loop_.Turns(), 3);
  ASSERT_GE(progress_.size(), 3u);
  EXPECT_TRUE(std::is_sorted(progress_.begin(), progress_.end()));
  EXPECT_EQ(progress_.back(), 1000);
  ASSERT_TRUE(ended_);
  ASSERT_EQ(ended_->curves.size(), 1u);
  EXPECT_EQ(ended_->curves[0].Size(), 2u);
  EXPECT_EQ(ended_->source, "long.txt");
}

TEST_F(LoadingTest, CancellingEndsItWithoutAWord) {
  Begin(MakeTextSource("text", std::string(8 << 20, '\n')));
  loading_->OnProgress = nullptr;
  loop_.Outside(Duration::zero(), [this] { loading_.reset(); });
  loop_.Pass(std::chrono::seconds(1));
  EXPECT_FALSE(ended_);
  EXPECT_LE(loop_.Turns(), 2);
}

TEST_F(LoadingTest, AFileThatShrinksMeanwhileEndsWhereItEnds) {
  const std::filesystem::path file = folder_.Path() / "short.txt";
  std::ofstream(file) << "1\n2\n" << std::string(1 << 20, '\n');
  Begin(OpenFileSource(file).source);
  std::filesystem::resize_file(file, 4);
  loop_.Pass(std::chrono::seconds(1));
  ASSERT_TRUE(ended_);
  EXPECT_EQ(ended_->summary, "2 numbers in 2 rows");
}

TEST(LoadChoice, ObjectionsStandBesideTheFieldThatIsWrong) {
  using Time = TableSettings::Time;
  using Kind = NumberRule::Kind;
  const std::vector<std::pair<LoadChoice, std::string>> cases{
      {{}, "|"},
      {{.which = "1, 3;2"}, "|"},
      {{.which = "0"}, "\"0\" is no place: 1 is the first; commas part several.|"},
      {{.which = "1,"}, "\"\" is no place: 1 is the first; commas part several.|"},
      {{.which = "1,2,3,4,5,6,7,8,9"}, "At most 8 curves can be read at once.|"},
      {{.kind = Kind::Group, .which = "(a"},
       "The expression cannot be understood at its character 3: missing closing parenthesis.|"},
      {{.time = Time::Rate, .rate = "0"}, "|The rate is a number of rows a second, above 0."},
      {{.time = Time::Rate, .rate = "1e999"}, "|The rate is a number of rows a second, above 0."},
      {{.time = Time::Column, .timeColumn = "1.5"}, "|The column is a whole number; 1 is the first."},
  };
  for (const auto& [choice, troubles] : cases) {
    const LoadSettings settings = SettingsOf(choice);
    EXPECT_EQ(settings.numberTrouble + "|" + settings.timeTrouble, troubles);
    EXPECT_EQ(settings.Usable(), troubles == "|");
  }
}

TEST(TablePreview, ProposesWhatFitsTheText) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"12,5\n13\n", "1"},
      {"ST,GS,+12.5 kg\n", "column 3"},
      {"time;net;note;gross\n0;1,5;x;2\n", "column 2,4 by time"},
      {"a,b\n1,2\n", "column 1,2"},
      {"2026-11-22 10:00:00\t5\n", "column 2 by time"},
      {"2026-11-22 10:00:00.135 <- 12.346 kg{0D}{0A}\n", "1 by time"},
      {"", "1"},
  };
  for (const auto& [text, expected] : cases) {
    const TableSettings settings = ProposedFor(text);
    const LoadChoice choice = ChoiceOf(settings, {});
    EXPECT_EQ((choice.kind == NumberRule::Kind::Column ? "column " : "") + choice.which +
                  (choice.time == TableSettings::Time::Column ? " by time" : ""),
              expected);
    const TablePreview preview = PreviewOf(text, settings);
    EXPECT_EQ(preview.numbers > 0, !text.empty()) << text;
  }
}

}  // namespace
}  // namespace quarlin
