// A pseudo-terminal: the instrument holds one end, a client opens the other as it would a serial port.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

#include "instrument/file_handle.h"

namespace quarlin::instrument {

// What one read or write moved. Nothing moved and no error: there was nothing to read, or no room.
struct Moved {
  std::size_t bytes = 0;
  std::error_code error;
};

class PtyPort {
 public:
  // Opens a new pseudo-terminal in raw mode; throws std::system_error when there is none to be had. The
  // client's end stays open here too, so that clients may come and go without a hang-up.
  PtyPort();

  const std::string& ClientPath() const { return clientPath_; }
  int Descriptor() const { return ours_.Get(); }  // to wait on; closed with the port

  // Neither ever blocks.
  Moved Read(std::span<char> buffer) const;
  Moved Write(std::string_view bytes) const;

  // True when a client has yet to fetch something that was written. Closing the port throws that away.
  bool Unfetched() const;

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
