// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/tcp_port.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "instrument/bound_socket.h"
#include "instrument/system_call.h"

namespace quarlin::instrument {

TcpPort::TcpPort(const std::string& address, std::uint16_t port)
    : door_(BoundSocket(SOCK_STREAM, address, port)), name_(SocketName(door_.Get())) {
  Require(listen(door_.Get(), SOMAXCONN) == 0, name_);
}

// Knocking is told only once, so all who knock are let in, and the visitors before the last are gone at once.
bool TcpPort::LetIn() {
  bool cameIn = false;
  for (;;) {
    FileHandle client(accept4(door_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (client.Get() < 0) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      return cameIn;
    }
    const int on = 1;  // each answer, and each piece of one, leaves at once
    setsockopt(client.Get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    client_ = std::move(client);
    cameIn = true;
  }
}

// The end of what the client sends has no bytes, so even a read that did not fill the buffer may have left it
// behind.
Moved TcpPort::Read(std::span<char> buffer) {
  if (client_.Get() < 0) return {};
  const ssize_t bytes = recv(client_.Get(), buffer.data(), buffer.size(), 0);
  Moved moved = Judge(Result(bytes));
  char next = 0;
  moved.more = bytes > 0 && (recv(client_.Get(), &next, 1, MSG_PEEK) >= 0 || errno != EAGAIN);
  moved.ended = bytes == 0;
  return moved;
}

Moved TcpPort::Write(std::string_view bytes) {
  if (client_.Get() < 0) return {};
  return Judge(Result(send(client_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL)));
}

Moved TcpPort::Judge(Moved moved) {
  if (moved.error) {
    HangUp();
    moved.error.clear();
  }
  return moved;
}

// What the client's system has acknowledged outlives the port.
bool TcpPort::Unfetched() const {
  int bytes = 0;
  return client_.Get() >= 0 && ioctl(client_.Get(), SIOCOUTQ, &bytes) == 0 && bytes > 0;
}

}  // namespace quarlin::instrument
