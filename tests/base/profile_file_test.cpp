// SPDX-License-Identifier: GPL-3.0-or-later
// The initialisation-file reader: its syntax, odd files, and how soon a change shows.

#include "base/profile_file.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
namespace fs = std::filesystem;

class ProfileFileTest : public testing::Test {
 protected:
  void Write(std::string_view content) { WriteInPlace(path, content); }
  std::string Read(std::string_view key) { return file.ReadProfileString("COMMAND", key); }

  TempFolder folder;
  fs::path path = folder / "Table.txt";
  ProfileFile file{ProgramFolder(folder.Path()), "Table.txt"};
};

TEST_F(ProfileFileTest, FindsValues) {
  struct Case {
    std::string content, key, expected;
  };
  const std::string s = "[COMMAND]\n";
  const std::vector<Case> cases{
      {s + "READ=12.5 kg", "READ", "12.5 kg"},
      {s + "READ=12.5 kg", "read", "12.5 kg"},
      {"[command]\nrEAD=1", "ReaD", "1"},
      {s + "READ=1", "REA", ""},
      {s + "READ=1", "READY", ""},
      {s + "READ=1", "READ ", ""},
      {s + "READ=1", "", ""},
      {s + "=1", "", ""},
      {s + " \t READ \t = \t 12 kg \t ", "READ", "12 kg"},
      {s + "\tA B = 1", "A B", "1"},
      {s + "A=1\nA=2", "A", "1"},
      {s + "A=\nA=2", "A", ""},
      {s + "A=1=2", "A", "1=2"},
      {s + "A", "A", ""},
      {s + "A=\"1\"", "A", "1"},
      {s + "A= ' 1 ' ", "A", " 1 "},
      {s + "A=\"\"1\"\"", "A", "\"1\""},
      {s + "A=\"1'", "A", "\"1'"},
      {s + "A=\"", "A", "\""},
      {s + "A=\"\"", "A", ""},
      {s + ";A=1\n ; A=2\nA=3;4", "A", "3;4"},
      {s + ";A=1", ";A", ""},
      {s + "{02}R[1]=x", "{02}R[1]", "x"},
      {s + "[A=1", "[A", "1"},
      {s + "[A]=1\nB=2", "[A]", ""},
      {s + "[A]=1\nB=2", "B", ""},
      {"A=0\n[OTHER]\nA=1\n  [ COMMAND ] junk\nA=2", "A", "2"},
      {s + "A=1\n[X]\nB=2\n[COMMAND]\nB=3", "B", ""},
      {s + "A=1\r\nB=2\r\n", "B", "2"},
      {"[COMMAND]\rA=1\rB=2", "B", "2"},
      {"[COMMAND]\r\r\n\nA=1\r", "A", "1"},
      {"\xEF\xBB\xBF[COMMAND]\nA=1", "A", "1"},
      {s + "A=\xC2\xB5m", "A", "\xB5m"},
      {s + "A=\xB5m", "A", "\xB5m"},
      {s + "\xC3\x84=1", "\xC4", "1"},
      {s + "A=x\0y"s, "A", "x\0y"s},
      {"A=1", "A", ""},
      {"", "A", ""},
      {"[COMMAND", "A", ""},
      {"\xFF\xFE[\0C\0]\0=\x80]\n[\n=\n\x00=\x00"s, "A", ""},
  };
  for (const auto& [content, key, expected] : cases) {
    Write(content);
    EXPECT_EQ(Read(key), expected) << content;
  }
}

TEST_F(ProfileFileTest, CutsALongValue) {
  Write("[COMMAND]\nA=\"" + std::string(5000, 'x') + "\"\nB=" + std::string(2047, 'y') + "\n");
  EXPECT_EQ(Read("A"), std::string(2047, 'x'));
  EXPECT_EQ(Read("B"), std::string(2047, 'y'));
}

TEST_F(ProfileFileTest, ReadsALongFile) {
  std::string content = "[COMMAND]\n";
  while (content.size() < 10'000'000) content += "KEY" + std::to_string(content.size()) + "=some value\n";
  Write(content + "LAST=1");
  EXPECT_EQ(Read("last"), "1");
  EXPECT_EQ(Read("KEY10"), "some value");
  Write(std::string(8'000'000, '['));
  EXPECT_EQ(Read("LAST"), "");
}

TEST_F(ProfileFileTest, WhatIsNoReadableFileHoldsNothing) {
  EXPECT_EQ(Read("A"), "");
  fs::create_directory(path);
  EXPECT_EQ(Read("A"), "");
  fs::remove(path);
  Write("[COMMAND]\nA=1");
  EXPECT_EQ(Read("A"), "1");
  fs::remove(path);
  EXPECT_EQ(Read("A"), "");
}

TEST_F(ProfileFileTest, TheExactNameComesBeforeOneInOtherCaseAlsoWhenItComesLater) {
  EXPECT_EQ(Read("A"), "");
  WriteInPlace(folder / "TABLE.TXT", "[COMMAND]\nA=other case");
  EXPECT_EQ(Read("A"), "other case");
  std::this_thread::sleep_for(60ms);  // from here on the file counts as settled
  EXPECT_EQ(Read("A"), "other case");
  Write("[COMMAND]\nA=exact");
  std::this_thread::sleep_for(2ms);
  EXPECT_EQ(Read("A"), "exact");
  fs::remove(path);
  EXPECT_EQ(Read("A"), "other case");
}

TEST_F(ProfileFileTest, AChangeWithinOneClockTickShows) {
  for (int i = 100; i < 400; ++i) {
    const std::string value = std::to_string(i);
    Write("[COMMAND]\nA=" + value);  // in place and of equal length
    ASSERT_EQ(Read("A"), value);
  }
}

TEST_F(ProfileFileTest, AChangeShowsAlsoWhenTheFileLooksTheSame) {
  Write("[COMMAND]\nA=1");
  std::this_thread::sleep_for(60ms);  // from here on the file counts as settled
  EXPECT_EQ(Read("A"), "1");
  const auto modified = fs::last_write_time(path);
  Write("[COMMAND]\nA=2");
  fs::last_write_time(path, modified);
  EXPECT_EQ(Read("A"), "2");

  std::this_thread::sleep_for(60ms);
  EXPECT_EQ(Read("A"), "2");
  WriteInPlace(folder / "new", "[COMMAND]\nA=3");
  fs::last_write_time(folder / "new", modified);
  fs::rename(folder / "new", path);
  EXPECT_EQ(Read("A"), "3");
}

// In a burst of requests the way to the file is not walked each time.
TEST_F(ProfileFileTest, AChangeInABurstShowsInTheNextRead) {
  const auto write = [this](const char* name, int value) {
    WriteInPlace(folder / name, "[COMMAND]\nA=" + std::to_string(value));
  };
  using Change = std::function<void(int value)>;
  const std::vector<Change> changes{
      [&](int value) { write("Table.txt", value); },
      [&](int value) {
        write("new", value);
        fs::rename(folder / "new", path);
      },
      [&](int value) {
        fs::rename(path, folder / "old");
        write("Table.txt", value);
      },
      [&](int value) {
        fs::create_hard_link(path, folder / "other");
        fs::remove(path);
        write("Table.txt", value);
      },
      [&](int) { fs::remove(path); },
  };
  write("Table.txt", 0);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    std::this_thread::sleep_for(60ms);
    const std::string before = Read("A");
    for (int burst = 0; burst < 100; ++burst) ASSERT_EQ(Read("A"), before);
    changes[i](static_cast<int>(i) + 1);
    EXPECT_EQ(Read("A"), i + 1 < changes.size() ? std::to_string(i + 1) : "") << i;
  }
}

TEST_F(ProfileFileTest, ALinkThatLeadsElsewhereShowsAMillisecondLater) {
  WriteInPlace(folder / "1", "[COMMAND]\nA=1");
  WriteInPlace(folder / "2", "[COMMAND]\nA=2");
  fs::create_symlink("1", path);
  std::this_thread::sleep_for(60ms);
  for (int burst = 0; burst < 100; ++burst) ASSERT_EQ(Read("A"), "1");
  fs::remove(path);
  fs::create_symlink("2", path);
  std::this_thread::sleep_for(2ms);
  EXPECT_EQ(Read("A"), "2");
}

TEST_F(ProfileFileTest, TheRevisionCountsOtherContentOnly) {
  Write("[COMMAND]\nA=1\na=2\nB=");
  file.Refresh();
  const std::uint64_t revision = file.Revision();
  Write("[COMMAND]\nA=1\na=2\nB=");
  file.Refresh();
  EXPECT_EQ(file.Revision(), revision);
  ASSERT_EQ(file.Entries("command").size(), 2U) << "the second of a key is none";
  EXPECT_EQ(file.Entries("command")[1].key, "B");
  Write("[COMMAND]\nA=2");
  file.Refresh();
  EXPECT_NE(file.Revision(), revision);
}

}  // namespace
}  // namespace quarlin
