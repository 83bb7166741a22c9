// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_owner.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "base/files.h"
#include "connect/port_list.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

namespace fs = std::filesystem;

TEST(PortOwner, ADeviceIsTheSameUnderEveryNameThatHasItsNumber) {
  const TempFolder folder;
  const fs::path byId = folder.Path() / "by-id";
  fs::create_directory(byId);
  fs::create_symlink("/dev/zero", byId / "usb-Other");
  fs::create_symlink("/dev/null", byId / "usb-Scale");
  EXPECT_EQ(StablePath("/dev/null", byId), (byId / "usb-Scale").string());
  EXPECT_EQ(StablePath("/dev/full", byId), "") << "a stranger has no entry";
  EXPECT_EQ(StablePath(folder.Path(), byId), "");
  const fs::path node = folder.Path() / "node";
  if (mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) GTEST_SKIP() << "no right to make a node";
  EXPECT_EQ(StablePath(node, byId), (byId / "usb-Scale").string()) << "another node of the same device";
}

TEST(PortOwner, WhereAPermissionIsMissingTheWayToItIsTold) {
  struct Case {
    Permission permission;
    std::string advice;
  };
  const std::string rule = "is for root alone: it needs a udev rule with GROUP=\"dialout\", MODE=\"0660\"";
  const std::vector<Case> cases{
      {{"dialout", true, "anna"},
       "belongs to group dialout: sudo usermod -aG dialout anna, then log in again"},
      {{"uucp", true, ""}, "belongs to group uucp: sudo usermod -aG uucp YOUR-NAME, then log in again"},
      {{"dialout", true, "anna", true},
       "belongs to group dialout, which you have joined since you logged in: log in again"},
      {{"dialout", true, "anna", true, true},
       "belongs to group dialout, and so do you: something else forbids it, such as a container"},
      {{"dialout", false, "anna"}, rule},
      {{"root", true, "anna"}, rule},
      {{"", true, "anna"}, rule},
  };
  for (const Case& row : cases) EXPECT_EQ(Advice(row.permission), row.advice);
  EXPECT_EQ(WhoseIsIt("/dev/missing", EACCES), "");
  EXPECT_EQ(WhoseIsIt("/dev/null", EIO), "");
  EXPECT_EQ(MissingPermission("/dev/null"), "") << "everybody may";
  EXPECT_EQ(MissingPermission("/dev/missing"), "");
}

// A child that is somebody else meets a real refusal.
TEST(PortOwner, AnotherUserIsToldHerNameAndTheGroupOfTheDevice) {
  const passwd* const nobody = getpwnam("nobody");
  const group* const dialout = getgrnam("dialout");
  if (geteuid() != 0 || nobody == nullptr || dialout == nullptr) GTEST_SKIP() << "no right to be another";
  int instrument = -1;
  int port = -1;
  char path[64];
  ASSERT_EQ(openpty(&instrument, &port, path, nullptr, nullptr), 0);
  ASSERT_EQ(chown(path, 0, dialout->gr_gid), 0);
  ASSERT_EQ(chmod(path, 0660), 0);
  const std::string expected = "belongs to group dialout: sudo usermod -aG dialout nobody, then log in again";
  const pid_t child = fork();
  if (child == 0) {
    const bool other =
        setgroups(0, nullptr) == 0 && setgid(nobody->pw_gid) == 0 && setuid(nobody->pw_uid) == 0;
    const bool told = MissingPermission(path) == expected && WhoseIsIt(path, EACCES) == expected;
    _exit(other && told ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  close(instrument);
  close(port);
}

TEST(PortOwner, TheProgramThatHoldsABusyPortIsNamed) {
  const TempFolder folder;
  const fs::path held = folder.Path() / "4711" / "fd";
  fs::create_directories(held);
  fs::create_directories(folder.Path() / "4710" / "fd");
  fs::create_directories(folder.Path() / "sys");
  fs::create_symlink("/dev/zero", folder.Path() / "4710" / "fd" / "3");
  fs::create_symlink("/dev/full", held / "7");
  WriteWholeFile(folder.Path() / "4711" / "comm", "logger\n");
  EXPECT_EQ(WhoseIsIt("/dev/full", EBUSY, folder.Path()), "is held by logger (4711)");
  EXPECT_EQ(WhoseIsIt("/dev/null", EBUSY, folder.Path()), "");
}

}  // namespace
}  // namespace quarlin
