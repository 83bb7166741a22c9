// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/process.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>
#include <string>

namespace quarlin {

void PrepareProcess() {
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // Opening takes the lowest free number, which is this one.
    if (fcntl(stream, F_GETFD) < 0) static_cast<void>(!open("/dev/null", O_RDWR));
  }
}

// Standard error may be a pipe that nobody reads.
void Abandon(std::string_view why) {
  constexpr int patience = 200;  // milliseconds
  const std::string line = "quarlin: " + std::string(why) + "\n";
  pollfd errors{STDERR_FILENO, POLLOUT, 0};
  if (poll(&errors, 1, patience) > 0) static_cast<void>(!write(STDERR_FILENO, line.data(), line.size()));
  _exit(1);
}

}  // namespace quarlin
