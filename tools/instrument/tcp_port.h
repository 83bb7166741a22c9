// SPDX-License-Identifier: GPL-3.0-or-later
// A TCP port: one client at a time, the latest.
#pragma once

#include <cstdint>
#include <string>

#include "base/file_handle.h"
#include "instrument/port.h"

namespace quarlin::instrument {

// Nothing that a client does is an error of the port: one that resets or vanishes has just gone.
class TcpPort : public Port {
 public:
  // Listens from here on; throws std::system_error when it cannot.
  TcpPort(const std::string& address, std::uint16_t port);

  std::string Name() const override { return name_; }
  int Descriptor() const override { return client_.Get(); }
  Moved Read(std::span<char> buffer) override;
  Moved Write(std::string_view bytes) override;
  bool Unfetched() const override;
  int Door() const override { return door_.Get(); }
  bool LetIn() override;
  void HangUp() override { client_ = FileHandle(); }

 private:
  Moved Judge(Moved moved);

  FileHandle door_;
  FileHandle client_;
  std::string name_;
};

}  // namespace quarlin::instrument
