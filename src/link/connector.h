// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the connection of a client: looks its peer's name up and tries the addresses in turn, each with its
// share of the time. It goes on by itself, driven by an alarm; a caller that yields until it is over, when no
// alarm fires, takes the steps itself.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "controls/alarms.h"
#include "controls/event_loop.h"
#include "link/resolver.h"
#include "link/socket.h"

namespace quarlin {

struct Peer {
  bool udp = false;
  std::string host;  // name or address
  int port = 0;
};

class Connector {
 public:
  static constexpr Duration longest = std::chrono::seconds(30);

  // Begins with the first step. `over` is called when the alarm's steps have come to an end; it may end the
  // connector. Null for a caller that takes the steps itself.
  Connector(EventLoop& loop, Peer peer, std::function<void()> over);

  bool Over() const { return over_; }

  // When the next step is due; it may become earlier during a yield.
  Instant Due() const { return due_; }
  void Step();

  // Once it is over: the connection and whom it leads to, or else why there is none.
  Socket TakeSocket() { return std::move(socket_); }
  const SocketAddress& Address() const { return address_; }
  const std::string& Failure() const { return failure_; }

 private:
  void SetDue(Instant due);
  bool AddressesKnown();
  void TryNext();
  bool StillConnecting();
  void TakeResult(std::error_code error);
  void Fail(std::string words);

  EventLoop& loop_;
  const Peer peer_;
  const Instant deadline_;
  bool over_ = false;
  Socket socket_;          // of the try in progress, then of the connection
  SocketAddress address_;  // that is tried
  std::string failure_;

  std::vector<SocketAddress> addresses_;  // not tried yet
  std::error_code lastError_;
  std::unique_ptr<Watch> watch_;  // while the system connects
  bool answered_ = false;         // it has an outcome
  Instant tryEnds_{};

  Instant due_;
  Alarm alarm_;
  std::unique_ptr<LookUp> lookUp_;  // until the addresses are known
};

}  // namespace quarlin
