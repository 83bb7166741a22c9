// SPDX-License-Identifier: GPL-3.0-or-later
// Which files the log of the traffic goes to, from the controls down to the disk.

#include "display/log_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "base/files.h"
#include "display/traffic_logs.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>;

LocalTime At(int day, std::chrono::seconds time = 10h) {
  return std::chrono::local_days(std::chrono::year(2026) / 3 / day) + time;
}

TEST(LogNameTest, NamesItsFilesAndKnowsThemAgain) {
  struct {
    const char* pattern;
    const char* first;
    const char* third;
  } const rows[]{
      {"LOG.TXT", "LOG.TXT", "LOG-part003.TXT"},
      {"log", "log", "log-part003"},
      {"%Y-%m-%d.log", "2026-03-04.log", "2026-03-04-part003.log"},
      {"a%y.%j %H%M%S", "a26.063 050607", "a26.063 050607-part003"},
      {"t%n(%d)+.txt", "t001(04)+.txt", "t003(04)+.txt"},
      {"100%%.txt", "100%.txt", "100%-part003.txt"},
  };
  const LocalTime time = At(4, 5h + 6min + 7s);
  for (const auto& row : rows) {
    const LogName name(row.pattern);
    EXPECT_EQ(name.Fault(), "") << row.pattern;
    EXPECT_EQ(name.At(time, 1), row.first);
    EXPECT_EQ(name.At(time, 3), row.third);
    EXPECT_EQ(name.NamesAt(time).NumberOf(row.third), 3U) << row.third;
    EXPECT_EQ(name.NamesAt(std::nullopt).NumberOf(row.first), 1U) << row.first;
    for (const char* foreign : {"", "LOG2.TXT", "LOG-002.TXT", "LOG-part2.TXT", "xLOG.TXT", "2026-3-04.log",
                                "2026-03-04 copy.log", "t01(04)+.txt"}) {
      EXPECT_EQ(name.NamesAt(std::nullopt).NumberOf(foreign), std::nullopt) << row.pattern << " " << foreign;
    }
  }
  EXPECT_EQ(LogName("%d.log").NamesAt(time).NumberOf("05.log"), std::nullopt) << "of another day";
}

class LogFilesRig : public testing::Test {
 protected:
  LogFilesRig() {
    loop_.SetLocal(At(4));
    controls_.chkLog.SetChecked(true);
  }

  void Restarted() {
    logs_.reset();
    for (CheckBox* box : {&controls_.chkLog, &controls_.chkLogPar, &controls_.chkLogNew, &controls_.chkLogDay,
                          &controls_.chkLogRows}) {
      box->Click = nullptr;
    }
    for (TextBox* box : {&controls_.txtLogName, &controls_.txtLogSize, &controls_.txtLogKeep})
      box->Change = nullptr;

    logs_ = std::make_unique<TrafficLogs>(loop_, controls_, ProgramFolder(folder_.Path()), tell_);
  }
  void Send(std::string_view text) { logs_->WriteTraffic(Direction::Sent, text); }
  Files Written() {
    logs_->Flush();
    Files files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.Path())) {
      files[entry.path().filename().string()] = ReadWholeFile(entry.path()).value_or("(none)");
    }
    return files;
  }
  void Name(std::string_view name) { controls_.txtLogName.SetText(name); }

  VirtualLoop loop_;
  DisplayControls controls_{loop_};
  TempFolder folder_;
  Words told_;
  std::function<void(std::string_view)> tell_ = [this](std::string_view words) { told_.emplace_back(words); };
  std::unique_ptr<TrafficLogs> logs_ =
      std::make_unique<TrafficLogs>(loop_, controls_, ProgramFolder(folder_.Path()), tell_);
};

TEST_F(LogFilesRig, ALogIsContinuedWithWhatLiesBesideLeftAlone) {
  WriteInPlace(folder_ / "log.txt", "old ");
  WriteInPlace(folder_ / "LOG-part009.TXT", "else");
  Restarted();
  Send("new");
  EXPECT_EQ(Written(), (Files{{"log.txt", "old new"}, {"LOG-part009.TXT", "else"}}));
}

TEST_F(LogFilesRig, EachStartCanHaveAFileOfItsOwn) {
  controls_.chkLogNew.SetChecked(true);
  Send("a");
  Send("b");
  Restarted();
  Send("c");
  controls_.chkLog.SetChecked(false);
  Send("not logged");
  controls_.chkLog.SetChecked(true);
  Send("d");
  EXPECT_EQ(Written(), (Files{{"LOG.TXT", "ab"}, {"LOG-part002.TXT", "c"}, {"LOG-part003.TXT", "d"}}));
  EXPECT_EQ(controls_.lblLogFile.Caption(), "LOG-part003.TXT");
}

TEST_F(LogFilesRig, ADayEndsAFileAlsoWhileTheProgramWasAway) {
  controls_.chkLogDay.SetChecked(true);
  Name("%m-%d.log");
  Send("a");
  loop_.SetLocal(At(5));
  Send("b");
  Name("day.log");
  Send("c");
  loop_.SetLocal(At(6));
  Send("d");
  EXPECT_EQ(Written(),
            (Files{{"03-04.log", "a"}, {"03-05.log", "b"}, {"day.log", "c"}, {"day-part002.log", "d"}}));

  const auto today = fs::last_write_time(folder_ / "day.log");
  loop_.SetLocal(LocalTime(std::chrono::file_clock::to_sys(today).time_since_epoch()) + UtcOffsetAt(At(6)));
  Restarted();
  Send("e");
  fs::last_write_time(folder_ / "day-part002.log", today - 48h);
  EXPECT_EQ(Written()["day-part002.log"], "de");
  fs::last_write_time(folder_ / "day-part002.log", today - 48h);
  Restarted();
  Send("f");
  EXPECT_EQ(Written()["day-part003.log"], "f");
}

TEST_F(LogFilesRig, AFileThatWouldGrowTooLargeIsFollowedByAnotherAndTheOldestGo) {
  for (const char* foreign : {"LOG-part1.TXT", "LOG-part001.TXT~", "LOG-copy.TXT"})
    WriteInPlace(folder_ / foreign, "");
  fs::create_directory(folder_ / "LOG-part000.TXT");
  controls_.txtLogSize.SetText("1");
  controls_.txtLogKeep.SetText("2");
  for (const char letter : std::string("abcde")) {
    Send(std::string(600, letter));
    logs_->Flush();
  }
  Send(std::string(424, 'e'));
  Files files = Written();
  EXPECT_EQ(files.size(), 6U);
  EXPECT_EQ(files["LOG-part004.TXT"], std::string(600, 'd'));
  EXPECT_EQ(files["LOG-part005.TXT"], std::string(1024, 'e'));

  Restarted();
  Send("f");
  Send(std::string(5000, 'g'));
  files = Written();
  EXPECT_EQ(files["LOG-part006.TXT"], "f") << "a full file is not continued";
  EXPECT_EQ(files["LOG-part007.TXT"].size(), 5000U) << "no text is cut in two";
}

TEST_F(LogFilesRig, ANameThatCannotBeIsToldAndItsBytesWaitForABetterOne) {
  struct {
    const char* name;
    std::string told;
  } const rows[]{
      {"", "the log cannot be called \"\": it names no file"},
      {"..", "the log cannot be called \"..\": it names no file"},
      {"logs/", "the log cannot be called \"logs/\": it names no file"},
      {"%Q.txt", "the log cannot be called \"%Q.txt\": %Q is no macro"},
      {"%n%n", "the log cannot be called \"%n%n\": it has %n twice"},
      {"a%", "the log cannot be called \"a%\": a single % at its end"},
      {"%Y/log", "the log cannot be called \"%Y/log\": the folder in front of the name takes no macros"},
      {"a\tb", "the log cannot be called \"a\tb\": it holds a control character"},
      {"./Config.cfg", "the log cannot be called Config.cfg: that is another file of the program"},
      {"logs/a.txt", "the log cannot be written: there is no folder " + (folder_ / "logs").string()},
  };
  for (const auto& row : rows) {
    told_.clear();
    Name(row.name);
    EXPECT_EQ(told_, Words{row.told}) << row.name;
  }
  told_.clear();
  Send("waits ");
  loop_.Pass(3s);
  EXPECT_EQ(told_, Words{rows[9].told + "; the run goes on"});
  EXPECT_EQ(logs_->Missing(), "a.txt lacks 6 bytes");
  fs::create_directory(folder_ / "logs");
  loop_.Pass(1s);
  EXPECT_EQ(ReadWholeFile(folder_ / "logs/a.txt"), "waits ");

  Name("%Q");
  Send("waits, too");
  loop_.Pass(1s);
  Name("good.txt");
  loop_.Pass(1s);
  EXPECT_EQ(Written()["good.txt"], "waits, too");
  EXPECT_EQ(told_.back(), "good.txt is written again");
}

TEST_F(LogFilesRig, RowsHaveTimeAndDirectionAndEndWithTheirLines) {
  controls_.chkLogRows.SetChecked(true);
  const auto receive = [&](std::string_view text) { logs_->WriteTraffic(Direction::Received, text); };
  Send("READ\r");
  loop_.Pass(7ms);
  Send("\nTARE\r");
  receive(
      "\x02"
      "12");
  loop_.Pass(5ms);
  receive(".5\r\nnext\r");
  receive("cr\n");
  logs_->WriteStamp(loop_.Local());
  logs_->WriteRowEnd();
  Send("open");
  controls_.txtLogSize.SetText("1");
  Send(std::string(900, 'x'));
  controls_.chkLogRows.SetChecked(false);
  receive("raw");
  const std::string day = "2026-03-04 10:00:00.";
  const Files files = Written();
  EXPECT_EQ(files.at("LOG.TXT"), day + "000 -> READ{0D}{0A}\r\n" + day + "007 -> TARE{0D}\r\n" + day +
                                     "007 <- {02}12.5{0D}{0A}\r\n" + day + "012 <- next{0D}\r\n" + day +
                                     "012 <- cr{0A}\r\n" + day + "012 -> open\r\n");
  EXPECT_EQ(files.at("LOG-part002.TXT"), day + "012 -> " + std::string(900, 'x') + "\r\nraw");
}

}  // namespace
}  // namespace quarlin
