// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ending_signals.h"

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <initializer_list>

namespace quarlin {

EndingSignals::EndingSignals() {
  sigset_t endings;
  sigemptyset(&endings);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&endings, number);
  pthread_sigmask(SIG_BLOCK, &endings, nullptr);
  descriptor_ = signalfd(-1, &endings, SFD_NONBLOCK | SFD_CLOEXEC);
}

EndingSignals::~EndingSignals() {
  close(descriptor_);
}

// The answer is the asking thread's own, so it holds for signals to the process and not to a single thread.
bool EndingSignals::Wait() const {
  pollfd asked{descriptor_, POLLIN, 0};
  return poll(&asked, 1, 0) > 0;
}

bool EndingSignals::Take() {
  signalfd_siginfo information;
  return read(descriptor_, &information, sizeof information) > 0;
}

}  // namespace quarlin
