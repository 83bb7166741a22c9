// SPDX-License-Identifier: GPL-3.0-or-later
// Two pseudo-terminals joined like the two plugs of a null-modem cable.
#pragma once

#include <array>
#include <cstddef>
#include <system_error>

#include "instrument/pty_port.h"
#include "instrument/signal_input.h"

namespace quarlin::instrument {

// What one side sends and the other does not fetch holds the sender up; nothing grows and nothing is lost.
class Joint {
 public:
  const PtyPort& Plug(std::size_t side) const { return plugs_[side]; }  // 0 or 1

  // Carries every byte to the other side until a signal ends it, or a pseudo-terminal fails: then returns
  // the error.
  std::error_code Run(const SignalInput& signals);

 private:
  // What was read from one side and has yet to be written to the other.
  struct Burden {
    std::array<char, 4096> bytes{};
    std::size_t begin = 0;
    std::size_t end = 0;
    bool Empty() const { return begin == end; }
  };

  std::error_code Carry(std::size_t from);

  std::array<PtyPort, 2> plugs_;
  std::array<Burden, 2> burdens_;  // by the side from which they come
};

}  // namespace quarlin::instrument
