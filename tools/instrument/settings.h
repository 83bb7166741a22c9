// SPDX-License-Identifier: GPL-3.0-or-later
// What the simulated instrument is told before it starts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "base/clock.h"
#include "macro/checksum.h"

namespace quarlin::instrument {

// What can go wrong with an answer, in the order in which the one random draw is divided among them.
enum class Fault : std::size_t { Drop, Garble, Short, BadChecksum, Split, Err };
inline constexpr std::size_t faultKinds = 6;

struct Settings {
  std::uint64_t seed = 1;                       // the same seed and requests give the same faults
  Duration delay{0};                            // from the end of a request to its answer
  Duration jitter{0};                           // up to this much more, evenly spread
  double streamRate = 0;                        // weights a second without being asked; 0 is none
  std::optional<ChecksumStyle> checksum;        // none: the answer ends right behind its body
  std::string end = "\r\n";                     // behind every answer
  std::array<double, faultKinds> faultRates{};  // each 0-1, together at most 1
  std::uint64_t count = 0;                      // ends after so many requests; 0 is never

  double& RateOf(Fault fault) { return faultRates[static_cast<std::size_t>(fault)]; }
};

}  // namespace quarlin::instrument
