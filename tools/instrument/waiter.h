// Sleeping until the port, a signal or a deadline has something to do.
#pragma once

#include <optional>

#include "base/clock.h"
#include "instrument/file_handle.h"

namespace quarlin::instrument {

// The port tells news only once, when bytes or room come: asking it on every turn whether it still has some
// costs a tenth of the round trips. So whoever leaves bytes or room behind must say so with LookAgain.
class Waiter {
 public:
  struct Interest {
    bool input = false;  // bytes to read
    bool room = false;   // to write
    bool operator==(const Interest&) const = default;
  };

  struct Ready {
    bool port = false;  // for what was of interest, or it has failed
    bool signals = false;
  };

  // Both descriptors stay open as long as this. Throws std::system_error when there can be no waiting.
  Waiter(int port, int signals);

  // Sleeps at most so long, to the nanosecond, or without end. Without interest in the port only signals
  // count.
  Ready Wait(Interest interest, std::optional<Duration> atMost);

  // The next wait tells also what the port had before.
  void LookAgain() { told_.reset(); }

 private:
  FileHandle epoll_;
  int port_;
  std::optional<Interest> told_;  // to the system; nothing when it must be told anew
};

}  // namespace quarlin::instrument
