// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/bound_socket.h"

#include <fmt/format.h>
#include <netdb.h>
#include <sys/socket.h>

#include <array>
#include <memory>

#include "instrument/system_call.h"

namespace quarlin::instrument {

namespace {

using AddressInfo = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressInfo Resolve(const std::string& address, std::uint16_t port, int type) {
  addrinfo wanted{};
  wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
  wanted.ai_socktype = type;
  addrinfo* found = nullptr;
  const auto service = fmt::format("{}", port);
  const int failed = getaddrinfo(address.c_str(), service.c_str(), &wanted, &found);
  return {failed == 0 ? found : nullptr, &freeaddrinfo};
}

}  // namespace

bool IsAddress(const std::string& text) {
  return !text.empty() && Resolve(text, 0, SOCK_STREAM) != nullptr;
}

FileHandle BoundSocket(int type, const std::string& address, std::uint16_t port) {
  const auto name = fmt::format("port {} of {}", port, address);
  const auto info = Resolve(address, port, type);
  if (!info) throw std::system_error(std::make_error_code(std::errc::address_not_available), name);
  FileHandle made(socket(info->ai_family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  Require(made.Get() >= 0, name);
  // A TCP port may be had again while its last connections fade out; of UDP this would share the port.
  const int on = 1;
  if (type == SOCK_STREAM) setsockopt(made.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  Require(bind(made.Get(), info->ai_addr, info->ai_addrlen) == 0, name);
  return made;
}

std::string SocketName(int socket) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  auto* const anyAddress = reinterpret_cast<sockaddr*>(&address);
  Require(getsockname(socket, anyAddress, &size) == 0, "socket name");
  std::array<char, 64> host{};
  std::array<char, 8> port{};
  getnameinfo(anyAddress, size, host.data(), host.size(), port.data(), port.size(),
              NI_NUMERICHOST | NI_NUMERICSERV);
  const bool colons = address.ss_family == AF_INET6;
  return fmt::format("{}{}{}:{}", colons ? "[" : "", host.data(), colons ? "]" : "", port.data());
}

}  // namespace quarlin::instrument
