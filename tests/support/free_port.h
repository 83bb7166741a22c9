// SPDX-License-Identifier: GPL-3.0-or-later
// A port number for servers of the tests.
#pragma once

#include <netinet/in.h>
#include <unistd.h>

#include <string>

#include "link/socket.h"

namespace quarlin {

// Nobody has it, nor has a connection that was just closed.
inline bool IsFree(int port, int type) {
  const Socket socket = Socket::Make(AF_INET, type);
  const SocketAddress address = SocketAddress::Any(AF_INET, port);
  return bind(socket.Get(), address.Pointer(), address.length) == 0;
}

// A free port below those that the system gives to clients, and one that no test beside this one takes.
inline std::string FreePort() {
  static int taken = 0;
  for (;;) {
    const int port = 20000 + (getpid() * 40 + taken++) % 12000;
    if (IsFree(port, SOCK_STREAM) && IsFree(port, SOCK_DGRAM)) return std::to_string(port);
  }
}

}  // namespace quarlin
