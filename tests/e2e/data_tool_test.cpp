// SPDX-License-Identifier: GPL-3.0-or-later
// quarlin-data: figures and filtered values as other programs get them, and what it says of bad input.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "e2e/program.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

struct DataCase {
  std::string file;
  std::vector<std::string> arguments;  // the file's name stands behind them
  int status;
  std::string output;
  std::string errors;
};

class DataTool : public testing::Test {
 protected:
  void Expect(const DataCase& row, const std::map<std::string, std::string>& environment = {}) {
    ASSERT_FALSE(WriteWholeFile(folder / "a.txt", row.file));
    std::vector<std::string> arguments = row.arguments;
    arguments.push_back(folder / "a.txt");
    Program program("quarlin-data", arguments, folder.Path(), environment);
    EXPECT_EQ(program.Wait(), row.status) << testing::PrintToString(row.arguments);
    EXPECT_EQ(program.Output(), row.output) << testing::PrintToString(row.arguments);
    EXPECT_EQ(program.Errors(), row.errors) << testing::PrintToString(row.arguments);
  }

  TempFolder folder;
};

TEST_F(DataTool, FiltersTheNumbersThatAreMeant) {
  const std::vector<std::string> mean{"filter", "--kind", "moving-average", "--width", "2"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), mean.begin(), mean.end());
    return more;
  };
  const DataCase cases[] = {
      {"1\n2\n4\n", mean, 0, "1\n1.5\n3\n", ""},
      {"ST,GS,+00012.5 kg\r\nST,GS,+00013.5 kg\r\n", mean, 0, "12.5\n13\n", ""},
      {"a;1,5;7\nb;2,5;9\n", with({"--column", "3"}), 0, "7\n8\n", ""},
      {"x=1 y=5\nx=2 y=7\n", with({"--match", "y=(\\S+)"}), 0, "5\n6\n", ""},
      {"1\n2\n4\n", with({"--zero-phase"}), 0, "1.25\n2.25\n3\n", ""},
      {"0.1\n0.1\n0.2\n1e9\n", {"filter", "--kind=median", "--width=3"}, 0, "0.1\n0.1\n0.1\n0.2\n", ""},
      {"8\n0\n0\n", {"filter", "--kind", "exponential", "--alpha", "0.5"}, 0, "8\n4\n2\n", ""},
      {"5\n5\n",
       {"filter", "--kind", "chebyshev", "--order", "8", "--cutoff", "1e-4", "--rate", "1"},
       0,
       "5\n5\n",
       ""},
      {"1\nnone\n2\n",
       {"filter", "--kind", "median", "--width", "1"},
       0,
       "1\n2\n",
       "quarlin-data: line 2: no number: none\nquarlin-data: 1 row without a number left out\n"},
  };
  for (const DataCase& row : cases) Expect(row, {{"LC_ALL", "de_DE.UTF-8"}});
}

TEST_F(DataTool, WritesBothFiles) {
  Expect({"1\n2\n",
          {"filter", "--kind", "moving-average", "--width", "2", "--out", folder.Path()},
          0,
          "1\n1.5\n",
          ""});
  EXPECT_EQ(ReadWholeFile(folder / "orig.dat"), "1\n2\n");
  EXPECT_EQ(ReadWholeFile(folder / "filter.dat"), "1\n1.5\n");
  Expect({"1\n",
          {"filter", "--kind", "moving-average", "--width", "2", "--out", folder / "none"},
          2,
          "",
          "quarlin-data: " + (folder / "none").string() + "/orig.dat: No such file or directory\n"});
}

TEST_F(DataTool, GivesFiguresAsJson) {
  const auto figures = [&](const std::string& text, const std::vector<std::string>& arguments) {
    EXPECT_FALSE(WriteWholeFile(folder / "a.txt", text));
    const int input = open((folder / "a.txt").c_str(), O_RDONLY);
    const int before = dup(STDIN_FILENO);
    dup2(input, STDIN_FILENO);
    Program program("quarlin-data", arguments, folder.Path());
    dup2(before, STDIN_FILENO);
    close(before);
    close(input);
    EXPECT_EQ(program.Wait(), 0);
    return nlohmann::json::parse(program.Output());
  };
  const auto json =
      figures("1000000001 kg\n1000000003 kg\nweight?\n1000000002 kg\n", {"stats", "--json", "-"});
  EXPECT_EQ(json["count"], 3);
  EXPECT_EQ(json["mean"], 1000000002.0);
  EXPECT_EQ(json["standard_deviation"], 1.0);
  EXPECT_EQ(json["minimum"], 1000000001.0);
  EXPECT_EQ(json["maximum"], 1000000003.0);
  EXPECT_EQ(json["median"], 1000000002.0);
  EXPECT_EQ(json["unit"], "kg");
  EXPECT_EQ(json["drift_per_hour"], nullptr);
  EXPECT_EQ(figures("7", {"stats", "--json"})["standard_deviation"], nullptr);
  EXPECT_EQ(figures("10:00:00;5\n10:30:00;6\n",
                    {"stats", "--json", "--column=2", "--time-column=1"})["drift_per_hour"],
            2.0);
  EXPECT_EQ(figures("1\n2\n", {"stats", "--json", "--rate", "8"})["drift_per_hour"], 28800.0);
}

TEST_F(DataTool, DrawsRawAndFilteredWithoutADisplay) {
  const std::map<std::string, std::string> bare{
      {"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}, {"XDG_RUNTIME_DIR", ""}};
  const auto picture = [&](std::vector<std::string> more) {
    more.insert(more.begin(), {"plot", "-o", folder / "run.svg"});
    Expect({"1 kg\n2 kg\n2 kg\n", more, 0, "", ""}, bare);
    return ReadWholeFile(folder / "run.svg").value_or("");
  };
  const std::string raw = picture({});
  const std::string both = picture({"--kind", "moving-average", "--width", "2"});
  for (const std::string& svg : {raw, both}) {
    EXPECT_NE(svg.find("<svg"), std::string::npos);
    EXPECT_NE(svg.find("</svg>"), std::string::npos);
  }
  EXPECT_GT(both.size(), raw.size());
  Expect({"1\n",
          {"plot", "-o", folder / "none/run.png"},
          2,
          "",
          "quarlin-data: " + (folder / "none/run.png").string() + ": No such file or directory\n"},
         bare);
}

TEST_F(DataTool, WrongUseAndBadFilesAreStatusTwoAndOneLine) {
  const std::vector<std::string> median{"filter", "--kind", "median", "--width"};
  const std::vector<std::string> lowPass{"filter", "--kind", "butterworth", "--rate", "100", "--order"};
  const auto with = [](std::vector<std::string> words, std::initializer_list<std::string> more) {
    words.insert(words.end(), more);
    return words;
  };
  ASSERT_FALSE(WriteWholeFile(folder / "good", "1\n"));
  ASSERT_FALSE(WriteWholeFile(folder / "words", "one\ntwo\n"));
  ASSERT_FALSE(WriteWholeFile(folder / "empty", ""));
  ASSERT_FALSE(WriteWholeFile(folder / "binary", std::string("1\n\0\0", 4)));
  const std::string good = folder / "good";
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"draw", good},
                                             {"stats", "--what", good},
                                             {"stats", "--zero-phase", good},
                                             {"stats", good, good},
                                             {"stats", "--column"},
                                             {"stats", "--column", "0", good},
                                             {"stats", "--match", "(", good},
                                             {"stats", "--match", "1", "--column", "1", good},
                                             {"stats", folder / "none"},
                                             {"stats", folder.Path()},
                                             {"stats", folder / "words"},
                                             {"stats", folder / "empty"},
                                             {"stats", folder / "binary"},
                                             {"filter", good},
                                             {"filter", "--kind", "best", good},
                                             with(median, {"4", good}),
                                             with(median, {"3.5", good}),
                                             with(median, {"3", "--alpha", "0.5", good}),
                                             with(lowPass, {"2", "--cutoff", "50", good}),
                                             with(lowPass, {"2", "--cutoff", "nan", good}),
                                             with(lowPass, {"2", good}),
                                             {"plot", good},
                                             {"plot", good, "-o", "a.gif"}}) {
    Program program("quarlin-data", arguments, folder.Path());
    EXPECT_EQ(program.Wait(), 2) << testing::PrintToString(arguments);
    EXPECT_EQ(program.Output(), "") << testing::PrintToString(arguments);
    const std::string errors = program.Errors();
    EXPECT_EQ(errors.substr(0, 14), "quarlin-data: ");
    EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
  }
}

TEST_F(DataTool, AnOutputThatIsClosedOrFullIsNoCrash) {
  ASSERT_FALSE(WriteWholeFile(folder / "a.txt", "1\n2\n"));
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  int pipe[2];
  ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
  close(pipe[0]);
  const std::pair<int, int> cases[] = {{-1, 0}, {full, 2}, {pipe[1], 0}};
  for (const auto& [output, status] : cases) {
    Program program("quarlin-data", {"stats", folder / "a.txt"}, folder.Path(), {}, output);
    EXPECT_EQ(program.Wait(), status);
  }
  close(full);
  close(pipe[1]);
}

}  // namespace
}  // namespace quarlin
