// SPDX-License-Identifier: GPL-3.0-or-later
// Carries the bytes between an instrument and its port, sleeping whenever there is nothing to carry.
#pragma once

#include <functional>
#include <system_error>

#include "base/clock.h"
#include "instrument/instrument.h"
#include "instrument/port.h"
#include "instrument/signal_input.h"
#include "instrument/waiter.h"

namespace quarlin::instrument {

class Server {
 public:
  // `report` is called for each Signal::Report.
  Server(Instrument& instrument, Port& port, const SignalInput& signals, const Clock& clock,
         std::function<void()> report);

  // Runs until a signal ends it, or the instrument is finished and the client has fetched all (or has not
  // within two seconds), or the port fails: then returns the error.
  std::error_code Run();

 private:
  bool EndedBySignal() const;
  std::error_code TakeInput(Instant now);
  std::error_code GiveOutput(Instant now);
  void AwaitFetching();
  void ChangeClient();
  void FollowClient();

  Instrument& instrument_;
  Port& port_;
  const SignalInput& signals_;
  Waiter waiter_;
  const Clock& clock_;
  std::function<void()> report_;
  bool clientEnded_ = false;  // it sends no more, and is sent away when it has all
};

}  // namespace quarlin::instrument
