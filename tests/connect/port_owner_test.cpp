// SPDX-License-Identifier: GPL-3.0-or-later
#include "connect/port_owner.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
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

TEST(PortOwner, AGroupIsNamedWhereAPermissionIsMissing) {
  EXPECT_EQ(WhoseIsIt("/dev/null", EACCES), "the group \"root\" may use it");
  EXPECT_EQ(WhoseIsIt("/dev/missing", EACCES), "");
  EXPECT_EQ(WhoseIsIt("/dev/null", EIO), "");
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
  EXPECT_EQ(WhoseIsIt("/dev/full", EBUSY, folder.Path()), "logger (4711) has it");
  EXPECT_EQ(WhoseIsIt("/dev/null", EBUSY, folder.Path()), "");
}

}  // namespace
}  // namespace quarlin
