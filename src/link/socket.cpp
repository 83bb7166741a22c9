// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/socket.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string_view>

namespace quarlin {

Socket& Socket::operator=(Socket&& other) noexcept {
  if (this != &other) {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = std::exchange(other.descriptor_, -1);
  }
  return *this;
}

Socket::~Socket() {
  if (descriptor_ >= 0) close(descriptor_);
}

Socket Socket::Make(int family, int type) {
  return Socket(socket(family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

void Socket::SetOption(int level, int option, int value) const {
  setsockopt(descriptor_, level, option, &value, sizeof value);
}

bool Socket::MeetsItself() const {
  SocketAddress own;
  SocketAddress peer;
  own.length = peer.length = sizeof(sockaddr_storage);
  return getsockname(descriptor_, own.Pointer(), &own.length) == 0 &&
         getpeername(descriptor_, peer.Pointer(), &peer.length) == 0 && own.length == peer.length &&
         std::memcmp(&own.storage, &peer.storage, own.length) == 0;
}

std::string SocketAddress::Text() const {
  char host[NI_MAXHOST];
  char port[NI_MAXSERV];
  if (getnameinfo(Pointer(), length, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) !=
      0) {
    return "?";
  }
  constexpr std::string_view mapped = "::ffff:";
  std::string_view shown = host;
  if (shown.starts_with(mapped) && shown.find('.') != std::string_view::npos)
    shown.remove_prefix(mapped.size());
  const bool brackets = shown.find(':') != std::string_view::npos;
  return fmt::format("{}{}{}:{}", brackets ? "[" : "", shown, brackets ? "]" : "", port);
}

SocketAddress SocketAddress::Any(int family, int port) {
  SocketAddress address;
  if (family == AF_INET6) {
    sockaddr_in6 any{};
    any.sin6_family = AF_INET6;
    any.sin6_port = htons(static_cast<std::uint16_t>(port));
    any.sin6_addr = in6addr_any;
    std::memcpy(&address.storage, &any, sizeof any);
    address.length = sizeof any;
  } else {
    sockaddr_in any{};
    any.sin_family = AF_INET;
    any.sin_port = htons(static_cast<std::uint16_t>(port));
    any.sin_addr.s_addr = htonl(INADDR_ANY);
    std::memcpy(&address.storage, &any, sizeof any);
    address.length = sizeof any;
  }
  return address;
}

std::optional<SocketAddress> SocketAddress::FromNumeric(const std::string& host, int port) {
  addrinfo hints{};
  hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), fmt::to_string(port).c_str(), &hints, &found) != 0) return std::nullopt;
  SocketAddress address;
  std::memcpy(&address.storage, found->ai_addr, found->ai_addrlen);
  address.length = found->ai_addrlen;
  freeaddrinfo(found);
  return address;
}

}  // namespace quarlin
