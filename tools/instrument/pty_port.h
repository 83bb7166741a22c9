// SPDX-License-Identifier: GPL-3.0-or-later
// A pseudo-terminal: the instrument holds one end, a client opens the other as it would a serial port.
#pragma once

#include <filesystem>
#include <string>

#include "base/file_handle.h"
#include "instrument/port.h"

namespace quarlin::instrument {

class PtyPort : public Port {
 public:
  // Opens a new pseudo-terminal in raw mode; throws std::system_error when there is none to be had. The
  // client's end stays open here too, so that clients may come and go without a hang-up.
  PtyPort();

  std::string Name() const override { return clientPath_; }
  int Descriptor() const override { return ours_.Get(); }
  Moved Read(std::span<char> buffer) override;
  Moved Write(std::string_view bytes) override;
  bool Unfetched() const override;

 private:
  FileHandle ours_;
  FileHandle clients_;
  std::string clientPath_;
};

// A symbolic link to a port, there as long as this object. A link that leads nowhere or to another
// pseudo-terminal is what an instrument left behind that was killed, and is replaced; anything else that has
// the name stays, and std::system_error is thrown.
class PortLink {
 public:
  PortLink(std::filesystem::path link, const std::filesystem::path& target);
  ~PortLink();  // leaves the link alone when it leads elsewhere by now
  PortLink(const PortLink&) = delete;
  PortLink& operator=(const PortLink&) = delete;

 private:
  std::filesystem::path link_;
  std::filesystem::path target_;
};

}  // namespace quarlin::instrument
