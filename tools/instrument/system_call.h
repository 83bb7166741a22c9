// SPDX-License-Identifier: GPL-3.0-or-later
// What the calls of the system return, as the instrument passes it on.
#pragma once

#include <sys/types.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "base/system_call.h"
#include "instrument/port.h"

namespace quarlin::instrument {

// Of a read or write that does not block.
inline Moved Result(ssize_t bytes) {
  if (bytes >= 0) return {static_cast<std::size_t>(bytes), {}};
  if (errno == EAGAIN || errno == EINTR) return {};
  return {0, LastError()};
}

// Throws std::system_error with the last error, which `what` had.
inline void Require(bool worked, const std::string& what) {
  if (!worked) throw std::system_error(LastError(), what);
}

}  // namespace quarlin::instrument
