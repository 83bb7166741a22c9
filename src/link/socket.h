// SPDX-License-Identifier: GPL-3.0-or-later
// Socket descriptors and addresses.
#pragma once

#include <sys/socket.h>

#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace quarlin {

// Owns a descriptor.
class Socket {
 public:
  Socket() = default;
  explicit Socket(int descriptor) : descriptor_(descriptor) {}
  Socket(Socket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Socket& operator=(Socket&& other) noexcept;
  ~Socket();

  // Non-blocking and closed at exec. Invalid where the system has no such family.
  static Socket Make(int family, int type);

  int Get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }
  void SetOption(int level, int option, int value) const;

  // A stream that looked for a port where nobody listens can get just that port for its own end, and is
  // then connected to itself.
  bool MeetsItself() const;

 private:
  int descriptor_ = -1;
};

struct SocketAddress {
  sockaddr_storage storage{};
  socklen_t length = 0;  // 0 for none

  const sockaddr* Pointer() const { return reinterpret_cast<const sockaddr*>(&storage); }
  sockaddr* Pointer() { return reinterpret_cast<sockaddr*>(&storage); }

  // "127.0.0.1:4001", "[::1]:4001"; an IPv4 address that comes in IPv6 clothes is shown without them.
  std::string Text() const;

  // Every local address, of a family.
  static SocketAddress Any(int family, int port);

  // A numeric address; nothing for a name.
  static std::optional<SocketAddress> FromNumeric(const std::string& host, int port);
};

}  // namespace quarlin
