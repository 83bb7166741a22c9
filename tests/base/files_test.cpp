// SPDX-License-Identifier: GPL-3.0-or-later
// Files are replaced whole or not at all, and nothing that could keep the program waiting is written to.

#include "base/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <set>
#include <vector>

#include "base/system_call.h"
#include "support/file_size_limit.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

// What a user without special rights may do, whoever runs the tests.
class AsNobody {
 public:
  AsNobody() { EXPECT_EQ(wasRoot_ ? seteuid(nobody) : 0, 0); }
  ~AsNobody() { EXPECT_EQ(wasRoot_ ? seteuid(0) : 0, 0); }

 private:
  bool wasRoot_ = geteuid() == 0;
};

class FilesTest : public testing::Test {
 protected:
  FilesTest() {
    fs::create_directory(folder / "other");
    WriteInPlace(file, "old content");
    chmod(file.c_str(), 0666);
  }

  // Every name in the folder; a file left behind would be one more.
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
      names.insert(entry.path().lexically_relative(folder.Path()).string());
    }
    return names;
  }

  static struct stat StatusOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status;
  }

  TempFolder folder;
  fs::path file = folder / "config.cfg";
};

TEST_F(FilesTest, ReplacingFollowsLinksAndKeepsModeAndOwner) {
  struct Case {
    const char* what;
    std::function<void()> prepare;
    fs::path written;  // the name that is written to
    fs::path found;    // where the content is then
  };
  const fs::path link = folder / "other/link";
  const std::vector<Case> cases{
      {"its own name", [] {}, file, file},
      {"a link", [&] { fs::create_symlink("../config.cfg", link); }, link, file},
      {"a link to a link", [&] { fs::create_symlink("other/link", folder / "far"); }, folder / "far", file},
      {"a link to nothing", [&] { fs::create_symlink("none", folder / "loose"); }, folder / "loose",
       folder / "none"},
      {"a second name", [&] { fs::create_hard_link(file, folder / "twin"); }, folder / "twin", file},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    row.prepare();
    chmod(file.c_str(), 0642);
    ASSERT_EQ(geteuid() == 0 ? chown(file.c_str(), nobody, 12345) : 0, 0);
    const bool wasLink = fs::is_symlink(row.written);
    std::set<std::string> names = Names();
    names.insert(row.found.lexically_relative(folder.Path()).string());
    const struct stat before = StatusOf(file);

    ASSERT_FALSE(WriteWholeFile(row.written, "new"));
    EXPECT_EQ(ReadWholeFile(row.found), "new");
    ASSERT_FALSE(OverwriteFile(row.written, "o"));
    EXPECT_EQ(ReadWholeFile(row.found), "oew");

    EXPECT_EQ(fs::is_symlink(row.written), wasLink);
    const struct stat after = StatusOf(file);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(Names(), names);
  }
}

TEST_F(FilesTest, AFailureLeavesTheFileAsItWasAndNothingBesideIt) {
  struct Case {
    const char* what;
    std::function<void()> prepare;
    std::error_code expected;
  };
  const std::vector<Case> cases{
      {"full", [] {}, SystemError(EFBIG)},
      {"full, in place", [&] { fs::create_hard_link(file, folder / "twin"); }, SystemError(EFBIG)},
      {"full, in a folder of others", [&] { chmod(folder.Path().c_str(), 0555), chmod(file.c_str(), 0666); },
       SystemError(EFBIG)},
      {"write-protected", [&] { chmod(file.c_str(), 0444); }, SystemError(EACCES)},
  };
  const std::string tooMuch(100'000, 'x');
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    chmod(folder.Path().c_str(), 0777);
    row.prepare();
    const std::set<std::string> names = Names();
    {
      const AsNobody user;
      const FileSizeLimit limit(65'536);
      EXPECT_EQ(WriteWholeFile(file, tooMuch), row.expected);
      EXPECT_EQ(OverwriteFile(file, tooMuch), row.expected);
    }
    EXPECT_EQ(ReadWholeFile(file), "old content");
    EXPECT_EQ(Names(), names);
  }
  chmod(folder.Path().c_str(), 0777);
}

TEST_F(FilesTest, AFolderOfOthersLetsAFileThatMayBeWrittenBeWritten) {
  chmod(file.c_str(), 0666);
  chmod(folder.Path().c_str(), 0555);
  {
    const AsNobody user;
    EXPECT_FALSE(WriteWholeFile(file, "new"));
    EXPECT_EQ(WriteWholeFile(folder / "another", "new"), std::errc::permission_denied);
  }
  EXPECT_EQ(ReadWholeFile(file), "new");
  chmod(folder.Path().c_str(), 0777);
}

TEST_F(FilesTest, NothingButFilesIsWrittenTo) {
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0666), 0);
  const std::error_code folders = SystemError(EISDIR);
  const std::error_code missing = SystemError(ENOENT);
  const struct {
    fs::path path;
    std::error_code whole;
    std::error_code appended;
  } cases[] = {
      {folder / "fifo", NoRegularFile(), NoRegularFile()},
      {folder / "other", folders, folders},
      {"/dev/full", NoRegularFile(), NoRegularFile()},
      {"/dev/ptmx", NoRegularFile(), NoRegularFile()},
      {"/dev/null", NoRegularFile(), {}},
      {folder / "none/config.cfg", missing, missing},
      {folder / "log", {}, {}},
  };
  for (const auto& row : cases) {
    std::size_t written = 0;
    EXPECT_EQ(WriteWholeFile(row.path, "x"), row.whole) << row.path;
    EXPECT_EQ(OverwriteFile(row.path, "x"), row.whole) << row.path;
    EXPECT_EQ(AppendToFile(row.path, "yz", written), row.appended) << row.path;
    EXPECT_EQ(written, row.appended ? 0U : 2U) << row.path;
  }
  EXPECT_EQ(ReadWholeFile(folder / "log"), "xyz");
}

}  // namespace
}  // namespace quarlin
