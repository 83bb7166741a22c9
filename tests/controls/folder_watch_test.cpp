// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/folder_watch.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "base/files.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class FolderWatchRig : public testing::Test {
 protected:
  void Write(const fs::path& file) { std::ofstream(file) << "text"; }
  void Served(Duration duration) {
    loop_.ServeDescriptors();
    loop_.Pass(duration);
  }

  TempFolder folder_;
  fs::path list_ = folder_ / "Command.txt";
  VirtualLoop loop_;
  int told_ = 0;
};

TEST_F(FolderWatchRig, TellsOnceOfEveryWayInWhichAFileChanges) {
  Write(list_);
  Write(folder_ / "other.txt");
  FolderWatch watch(loop_, folder_.Path());
  watch.Follow("command.TXT", [this] { ++told_; });
  struct {
    const char* what;
    std::function<void()> change;
    int told;
  } const rows[]{
      {"written", [&] { Write(list_); }, 1},
      {"replaced as the program does it", [&] { WriteWholeFile(list_, "new"); }, 1},
      {"replaced as an editor does it",
       [&] {
         fs::rename(list_, folder_ / "Command.txt~");
         Write(list_);
         fs::remove(folder_ / "Command.txt~");
       },
       1},
      {"gone", [&] { fs::remove(list_); }, 1},
      {"there under a name in other case", [&] { Write(folder_ / "COMMAND.TXT"); }, 1},
      {"moved away", [&] { fs::rename(folder_ / "COMMAND.TXT", folder_ / "old"); }, 1},
      {"a link", [&] { fs::create_symlink("old", list_); }, 1},
      {"another file", [&] { Write(folder_ / "other.txt"); }, 0},
  };
  for (const auto& row : rows) {
    told_ = 0;
    row.change();
    Served(FolderWatch::quiet);
    EXPECT_EQ(told_, row.told) << row.what;
  }
}

TEST_F(FolderWatchRig, ABurstIsToldOfWhenItEndsOrHasGoneOnForHalfASecond) {
  FolderWatch watch(loop_, folder_.Path());
  watch.Follow("Command.txt", [this] { ++told_; });
  for (int i = 0; i < 12; ++i) {
    Write(list_);
    Served(40ms);
    EXPECT_EQ(told_, 0) << i;
  }
  Write(list_);
  Served(20ms);
  EXPECT_EQ(told_, 1);
  Served(1h);
  EXPECT_EQ(told_, 1);
}

TEST_F(FolderWatchRig, AFileThatIsKeptOpenHasChangedWhenItIsClosed) {
  Write(list_);
  FolderWatch watch(loop_, folder_.Path());
  watch.Follow("Command.txt", [this] { ++told_; });
  std::ofstream half(list_);
  half << "ha" << std::flush;
  Served(1h);
  EXPECT_EQ(told_, 0);
  half.close();
  Served(1s);
  EXPECT_EQ(told_, 1);
}

TEST_F(FolderWatchRig, AFolderThatIsNotThereHasItsReasonAndOneThatGoesIsToldOf) {
  const FolderWatch none(loop_, folder_ / "missing");
  EXPECT_EQ(none.Trouble(), std::errc::no_such_file_or_directory);

  fs::create_directory(folder_ / "inner");
  FolderWatch watch(loop_, folder_ / "inner");
  watch.Follow("Command.txt", [this] { ++told_; });
  fs::remove(folder_ / "inner");
  Served(1s);
  Served(1s);
  EXPECT_EQ(told_, 1);
}

}  // namespace
}  // namespace quarlin
