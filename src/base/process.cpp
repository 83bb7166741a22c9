// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace quarlin {

void PrepareProcess() {
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // Opening takes the lowest free number, which is this one.
    if (fcntl(stream, F_GETFD) < 0) static_cast<void>(!open("/dev/null", O_RDWR));
  }
}

}  // namespace quarlin
