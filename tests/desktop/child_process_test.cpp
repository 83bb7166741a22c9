// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/child_process.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace quarlin {
namespace {

// A parent whose child prints its own number, and which then dies without any destructor.
[[noreturn]] void StartAndCrash(int report) {
  const StartedChild started = ChildProcess::Start({"/bin/sh", "-c", "echo $$; exec sleep 1000"});
  pollfd printed{started.child->OutputDescriptor(), POLLIN, 0};
  poll(&printed, 1, -1);
  const std::string number = started.child->TakeOutput().value_or("");
  if (write(report, number.data(), number.size()) < 0) _exit(1);
  raise(SIGKILL);
  _exit(1);
}

TEST(ChildProcess, EndsWithAParentThatCrashes) {
  ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);  // so that the orphan is ours to wait for
  int report[2];
  ASSERT_EQ(pipe(report), 0);
  const pid_t parent = fork();
  if (parent == 0) StartAndCrash(report[1]);
  char number[32] = {};
  ASSERT_GT(read(report[0], number, sizeof number - 1), 0);
  ASSERT_EQ(waitpid(parent, nullptr, 0), parent);
  const pid_t orphan = std::stoi(number);
  int status = 0;
  ASSERT_EQ(waitpid(orphan, &status, 0), orphan);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
  prctl(PR_SET_CHILD_SUBREAPER, 0);
  close(report[0]);
  close(report[1]);
}

}  // namespace
}  // namespace quarlin
