// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/udp_port.h"

#include "instrument/bound_socket.h"
#include "instrument/system_call.h"

namespace quarlin::instrument {

UdpPort::UdpPort(const std::string& address, std::uint16_t port)
    : socket_(BoundSocket(SOCK_DGRAM, address, port)), name_(SocketName(socket_.Get())) {}

Moved UdpPort::Read(std::span<char> buffer) {
  sockaddr_storage sender{};
  socklen_t size = sizeof sender;
  const ssize_t bytes =
      recvfrom(socket_.Get(), buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&sender), &size);
  Moved moved = Result(bytes);
  if (bytes < 0) return moved;
  client_ = sender;
  clientSize_ = size;
  moved.more = true;
  return moved;
}

Moved UdpPort::Write(std::string_view bytes) {
  if (clientSize_ == 0) return {bytes.size(), {}};
  const Moved moved = Result(sendto(socket_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL,
                                    reinterpret_cast<const sockaddr*>(&client_), clientSize_));
  return moved.error ? Moved{bytes.size(), {}} : moved;
}

}  // namespace quarlin::instrument
