// SPDX-License-Identifier: GPL-3.0-or-later
// What carries the bytes between the instrument and its client: a pseudo-terminal, a TCP or a UDP socket.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace quarlin::instrument {

// What one read or write moved. Nothing moved and no error: there was nothing to read, or no room.
struct Moved {
  std::size_t bytes = 0;
  std::error_code error;  // the port is of no use any more
  bool more = false;      // of a read: there may be more, and nothing will tell
  bool ended = false;     // of a read: the client sends no more, but may still fetch
};

class Port {
 public:
  virtual ~Port() = default;

  virtual std::string Name() const = 0;  // where a client finds it

  // Carries the bytes, to wait on. Negative while there is no client that could be served: one that has gone
  // is noticed in Read and Write. Closed with the client or the port.
  virtual int Descriptor() const = 0;

  // Neither ever blocks. One Write is one datagram where the port knows such.
  virtual Moved Read(std::span<char> buffer) = 0;
  virtual Moved Write(std::string_view bytes) = 0;

  // True when something that was written has yet to be fetched, and would be lost with the port.
  virtual bool Unfetched() const = 0;

  // Where clients have to knock first: becomes readable when one does. Negative where they need not.
  virtual int Door() const { return -1; }

  // Lets in who knocks; the last one replaces all before. False when nobody came in.
  virtual bool LetIn() { return false; }

  // Sends the client away after all that was written.
  virtual void HangUp() {}
};

}  // namespace quarlin::instrument
