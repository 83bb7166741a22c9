// SPDX-License-Identifier: GPL-3.0-or-later
// Sockets of the instrument's own address.
#pragma once

#include <cstdint>
#include <string>

#include "base/file_handle.h"

namespace quarlin::instrument {

// True for an IPv4 or IPv6 address in digits; names are none.
bool IsAddress(const std::string& text);

// A socket of SOCK_STREAM or SOCK_DGRAM that never blocks, at this port of `address`; port 0 is any free one.
// Throws std::system_error when it cannot be had.
FileHandle BoundSocket(int type, const std::string& address, std::uint16_t port);

// "127.0.0.1:4001", "[::1]:4001".
std::string SocketName(int socket);

}  // namespace quarlin::instrument
