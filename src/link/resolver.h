// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up the addresses of a name without blocking and without a thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/event_loop.h"
#include "link/socket.h"

namespace quarlin {

class LookUp {
 public:
  // Begins at once. `found` is called when it is over, from the event loop and also during a yield; it must
  // only wake somebody. Not for a numeric address, which is over already.
  LookUp(EventLoop& loop, const std::string& host, int port, std::function<void()> found);
  ~LookUp();

  bool Over() const;

  // The addresses in the order in which they are to be tried; empty when there is none, or none yet.
  const std::vector<SocketAddress>& Addresses() const;

  // When to call ServeTimeOuts, which asks again or elsewhere. It may call `found`.
  Instant NextTimeOut() const;
  void ServeTimeOuts();

 private:
  class Query;
  std::unique_ptr<Query> query_;  // none for a numeric address
  std::vector<SocketAddress> numeric_;
};

}  // namespace quarlin
