// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/examples.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/files.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Examples : public testing::Test {
 protected:
  Examples() {
    for (const char* below : {"scripts", "instrument"}) fs::create_directory(source / below);
    for (const char* name : {"config.cfg", "Command.txt", "scripts/a.vbs", "instrument/config.cfg"}) {
      WriteInPlace(source / name, std::string("example of ") + name);
      fs::permissions(source / name, fs::perms::owner_read);  // as installed
    }
  }
  CopiedExamples Copy() { return CopyExamples(source.Path(), ProgramFolder(folder.Path())); }
  std::string Text(std::string_view name) { return ReadWholeFile(folder / name).value_or("(none)"); }

  TempFolder source;
  TempFolder folder;
};

TEST_F(Examples, AllBecomeFilesOfTheUsersOwn) {
  const fs::path link = folder / "examples";
  fs::create_directory_symlink(source.Path(), link);  // as in the tree that was built
  const CopiedExamples outcome = CopyExamples(link, ProgramFolder(folder.Path()));
  EXPECT_EQ(outcome.copied, (Names{"Command.txt", "config.cfg", "instrument/config.cfg", "a.vbs"}));
  EXPECT_EQ(Text("a.vbs"), "example of scripts/a.vbs");
  EXPECT_EQ(Text("instrument/config.cfg"), "example of instrument/config.cfg");
  struct stat status {};
  ASSERT_EQ(stat((folder / "config.cfg").c_str(), &status), 0);
  EXPECT_TRUE(status.st_mode & S_IWUSR);
  EXPECT_EQ(outcome.Text("/f"), "4 files of examples copied to /f");
}

TEST_F(Examples, WhatIsThereStaysAndIsNamed) {
  WriteInPlace(folder / "COMMAND.TXT", "mine");
  fs::create_symlink("nowhere", folder / "config.cfg");
  WriteInPlace(folder / "instrument", "no folder");
  const CopiedExamples outcome = Copy();
  EXPECT_EQ(outcome.kept, (Names{"Command.txt", "config.cfg"}));
  EXPECT_EQ(outcome.failed, (Names{"instrument/config.cfg: Not a directory"}));
  EXPECT_EQ(Text("COMMAND.TXT"), "mine");
  EXPECT_EQ(Text("Command.txt"), "(none)");
  EXPECT_EQ(fs::read_symlink(folder / "config.cfg"), "nowhere");
  EXPECT_EQ(outcome.Text("/f"),
            "not copied: instrument/config.cfg: Not a directory; "
            "there already, and left as they are: Command.txt, config.cfg; 1 file of examples copied to /f");
}

TEST_F(Examples, AFolderIsUntouchedUntilTheProgramHasAFileInIt) {
  const auto untouched = [this] { return IsUntouched(ProgramFolder(folder.Path())); };
  WriteInPlace(folder / "quarlin", "the program itself");
  EXPECT_TRUE(untouched());
  for (const char* name : {"position.ini", "COMMAND.TXT", "own.vbs", "LOG.TXT"}) {
    WriteInPlace(folder / name, "");
    EXPECT_FALSE(untouched()) << name;
    fs::remove(folder / name);
  }
}

}  // namespace
}  // namespace quarlin
