// SPDX-License-Identifier: GPL-3.0-or-later
// What the instrument did, and how it is printed.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "instrument/settings.h"

namespace quarlin::instrument {

// Once nothing waits to be sent any more, requests == answers + dropped, unless a client left before its
// answer.
struct Counters {
  std::uint64_t requests = 0;                      // complete lines with something in them
  std::uint64_t answers = 0;                       // begun to be sent, with or without a fault
  std::array<std::uint64_t, faultKinds> faults{};  // dropped when drawn, the others when begun to be sent
  std::uint64_t unknown = 0;                       // requests that were not understood, answered ERR
  std::uint64_t streamed = 0;                      // weights sent without being asked
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;

  std::uint64_t Of(Fault fault) const { return faults[static_cast<std::size_t>(fault)]; }
};

// One "name: number" a line; names and order are stable.
std::string ReportText(const Counters& counters);

}  // namespace quarlin::instrument
