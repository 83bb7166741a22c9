// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/joint.h"

#include <poll.h>

#include <initializer_list>
#include <string_view>

namespace quarlin::instrument {

std::error_code Joint::Run(const SignalInput& signals) {
  for (;;) {
    std::array<pollfd, 3> watched{};
    watched[2] = {signals.Descriptor(), POLLIN, 0};
    for (const std::size_t side : {0U, 1U}) {
      const int input = burdens_[side].Empty() ? POLLIN : 0;
      const int room = burdens_[1 - side].Empty() ? 0 : POLLOUT;
      watched[side] = {plugs_[side].Descriptor(), static_cast<short>(input | room), 0};
    }
    poll(watched.data(), watched.size(), -1);
    while (const auto signal = signals.Next()) {
      if (*signal == Signal::End) return {};
    }
    for (const std::size_t from : {0U, 1U}) {
      if (const auto error = Carry(from)) return error;
    }
  }
}

std::error_code Joint::Carry(std::size_t from) {
  Burden& burden = burdens_[from];
  if (burden.Empty()) {
    const Moved arrived = plugs_[from].Read(burden.bytes);
    if (arrived.error) return arrived.error;
    burden.begin = 0;
    burden.end = arrived.bytes;
  }
  if (burden.Empty()) return {};
  const std::string_view left(burden.bytes.data() + burden.begin, burden.end - burden.begin);
  const Moved gone = plugs_[1 - from].Write(left);
  burden.begin += gone.bytes;
  return gone.error;
}

}  // namespace quarlin::instrument
