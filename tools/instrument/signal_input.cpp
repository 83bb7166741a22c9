// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/signal_input.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <initializer_list>

#include "instrument/system_call.h"

namespace quarlin::instrument {

SignalInput::SignalInput() {
  // A shell starts its background jobs deaf to SIGINT; here it is the documented way to end.
  for (const int number : {SIGINT, SIGTERM, SIGUSR1}) signal(number, SIG_DFL);
  signal(SIGPIPE, SIG_IGN);  // a reader of the counts that has gone is no reason to leave the link behind
  sigset_t wanted;
  sigemptyset(&wanted);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGUSR1}) sigaddset(&wanted, number);
  sigprocmask(SIG_BLOCK, &wanted, nullptr);
  signals_ = FileHandle(signalfd(-1, &wanted, SFD_NONBLOCK | SFD_CLOEXEC));
  Require(signals_.Get() >= 0, "signals");
}

std::optional<Signal> SignalInput::Next() const {
  signalfd_siginfo info{};
  if (read(signals_.Get(), &info, sizeof info) != sizeof info) return std::nullopt;
  return info.ssi_signo == SIGUSR1 ? Signal::Report : Signal::End;
}

}  // namespace quarlin::instrument
