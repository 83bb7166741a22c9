// SPDX-License-Identifier: GPL-3.0-or-later
// Sleeping until the port, a signal or a deadline has something to do.
#pragma once

#include <optional>

#include "base/clock.h"
#include "base/file_handle.h"

namespace quarlin::instrument {

// The port and its door tell news only once, when bytes, room or somebody come: asking on every turn whether
// there still are some costs a tenth of the round trips. So whoever leaves bytes or room behind must say so
// with LookAgain.
class Waiter {
 public:
  struct Interest {
    bool input = false;  // bytes to read
    bool room = false;   // to write
    bool operator==(const Interest&) const = default;
  };

  struct Ready {
    bool port = false;  // for what was of interest, or it has failed
    bool door = false;  // somebody knocks
    bool signals = false;
  };

  // The signals and the door, negative when there is none, stay open as long as this. Throws
  // std::system_error when there can be no waiting.
  explicit Waiter(int signals, int door = -1);

  // From here on the port is this descriptor, or none when it is negative. The one before is closed already.
  void Carry(int port);
  bool Carries() const { return port_ >= 0; }

  // Sleeps at most so long, to the nanosecond, or without end. Without interest in the port only signals
  // count.
  Ready Wait(Interest interest, std::optional<Duration> atMost);

  // The next wait tells also what the port had before.
  void LookAgain() { told_.reset(); }

 private:
  FileHandle epoll_;
  int port_ = -1;
  int door_;
  std::optional<Interest> told_;  // to the system; nothing when it must be told anew
};

}  // namespace quarlin::instrument
