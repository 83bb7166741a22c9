// Looks up the addresses of a name without blocking and without a thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/event_loop.h"
#include "link/socket.h"

namespace quarlin {

// The addresses of a host, in the order in which they are to be tried; a numeric address is its own.
// Empty when there is none, when it took too long or when `cancelled` says so. Yields.
std::vector<SocketAddress> Resolve(EventLoop& loop, const std::string& host, int port, Instant deadline,
                                   const std::function<bool()>& cancelled);

}  // namespace quarlin
