// SPDX-License-Identifier: GPL-3.0-or-later
// A UDP port: whoever sent the last datagram is the client.
#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <string>

#include "base/file_handle.h"
#include "instrument/port.h"

namespace quarlin::instrument {

class UdpPort : public Port {
 public:
  // Takes datagrams from here on; throws std::system_error when it cannot.
  UdpPort(const std::string& address, std::uint16_t port);

  std::string Name() const override { return name_; }
  int Descriptor() const override { return socket_.Get(); }

  // One datagram, of which the part that the buffer cannot hold is lost.
  Moved Read(std::span<char> buffer) override;

  // What cannot be delivered, or is written before anybody has sent something, is lost like any datagram
  // that gets lost on its way.
  Moved Write(std::string_view bytes) override;

  bool Unfetched() const override { return false; }

 private:
  FileHandle socket_;
  std::string name_;
  sockaddr_storage client_{};
  socklen_t clientSize_ = 0;  // 0: nobody yet
};

}  // namespace quarlin::instrument
