// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/log_writer.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "base/files.h"
#include "support/file_size_limit.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

class LogWriterRig : public testing::Test {
 protected:
  void Open() {
    log_ = std::make_unique<LogWriter>(loop_, LogFiles(ProgramFolder(folder_.Path()), {"LOG.TXT"}),
                                       [this](std::string_view words) { told_.emplace_back(words); });
  }
  void SetUp() override { Open(); }

  std::string Written() const { return ReadWholeFile(file_).value_or("(no file)"); }
  void Block() { std::filesystem::create_directory(file_); }
  void Fill() { full_.emplace(0); }
  void Free() {
    full_.reset();
    std::filesystem::remove(file_);
  }

  TempFolder folder_;
  std::filesystem::path file_ = folder_ / "LOG.TXT";
  VirtualLoop loop_;
  std::vector<std::string> told_;
  std::unique_ptr<LogWriter> log_;
  std::optional<FileSizeLimit> full_;
};

using Words = std::vector<std::string>;

TEST_F(LogWriterRig, WritesByteForByteFiftyMillisecondsAfterTheFirstByte) {
  const std::string bytes("a\0\xFF\r\n\x1A", 6);
  log_->Write(bytes);
  loop_.Pass(40ms);
  log_->Write("late");
  EXPECT_EQ(Written(), "(no file)");
  loop_.Pass(10ms);
  EXPECT_EQ(Written(), bytes + "late");

  log_->Write("next");
  loop_.Pass(49ms);
  EXPECT_EQ(Written(), bytes + "late");
  loop_.Pass(1ms);
  EXPECT_EQ(Written(), bytes + "latenext");
}

TEST_F(LogWriterRig, SleepsWhenNothingIsWaiting) {
  log_->Write("x");
  loop_.Pass(1h);
  EXPECT_EQ(loop_.Turns(), 1);
}

TEST_F(LogWriterRig, WritesAtOnceWhat64KiBHaveGathered) {
  log_->Write(std::string(65'535, 'x'));
  EXPECT_EQ(Written(), "(no file)");
  log_->Write("y");
  EXPECT_EQ(Written(), std::string(65'535, 'x') + "y");
}

TEST_F(LogWriterRig, AppendsAndWritesTheRestAtItsEnd) {
  log_->Write("first ");
  log_.reset();
  EXPECT_EQ(Written(), "first ");
  Open();
  log_->Write("second");
  log_->Flush();
  EXPECT_EQ(Written(), "first second");
}

TEST_F(LogWriterRig, ABlockedFileIsToldOnceAndTriedEachSecond) {
  Block();
  log_->Write("one ");
  loop_.Pass(10s);
  log_->Write(std::string(70'000, '-'));
  const Words failing{"LOG.TXT cannot be written: Is a directory; the run goes on"};
  EXPECT_EQ(told_, failing);
  EXPECT_EQ(loop_.Turns(), 10);

  Free();
  log_->Write(" two");
  EXPECT_EQ(Written(), "(no file)") << "no attempt at each write while writing fails";
  loop_.Pass(1s);
  EXPECT_EQ(Written(), "one " + std::string(70'000, '-') + " two");
  EXPECT_EQ(told_, (Words{failing[0], "LOG.TXT is written again"}));
  EXPECT_EQ(log_->LostBytes(), 0U);
}

TEST_F(LogWriterRig, AFullDiskLosesWhatExceedsAMebibyteAndSaysHowMuch) {
  Fill();
  const std::string early(mebibyte - 3, 'e');
  log_->Write(early);
  log_->Write("123lost");
  loop_.Pass(5s);
  log_->Write("lost too");
  EXPECT_EQ(log_->LostBytes(), 12U);

  Free();
  loop_.Pass(1s);
  EXPECT_EQ(Written(), early + "123");
  log_->Write("again");
  loop_.Pass(1s);
  EXPECT_EQ(Written(), early + "123again");

  Free();
  Block();
  log_->Write(std::string(mebibyte + 5, 'z'));
  Free();
  loop_.Pass(1s);
  const std::string failed = "LOG.TXT cannot be written: ";
  EXPECT_EQ(
      told_,
      (Words{failed + "File too large; the run goes on", "LOG.TXT is written again, 12 bytes are missing",
             failed + "Is a directory; the run goes on", "LOG.TXT is written again, 5 bytes are missing"}));
  EXPECT_EQ(log_->LostBytes(), 17U);
  EXPECT_EQ(log_->MissingBytes(), 17U);

  Free();
  Block();
  log_->Write("to the end");
  log_->Flush();
  EXPECT_EQ(log_->MissingBytes(), 27U);
}

TEST_F(LogWriterRig, ItsEndWithABlockedFileTellsNobody) {
  Block();
  log_->Write("x");
  log_.reset();
  loop_.Pass(5s);
  EXPECT_EQ(told_, Words{});
}

}  // namespace
}  // namespace quarlin
