// SPDX-License-Identifier: GPL-3.0-or-later
// The weighing indicator behind the line: it understands requests and makes the bodies of the answers,
// without checksum and terminator.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "instrument/load.h"

namespace quarlin::instrument {

class Scale {
 public:
  Scale(std::uint64_t seed, Instant start);

  // The body of the answer to a request, in any case; nothing when the request is not known.
  std::optional<std::string> Answer(std::string_view request, Instant now);

  // The weight, always 19 characters:
  //   ST,GS,+00012.345 kg     ST stable or US settling; GS gross or NT net; sign, number, unit
  //   US,NT,-0000120.0  g     a unit of one letter stands on the right
  std::string Weight(Instant now);

 private:
  struct Command;

  std::string Tare(Instant now);
  std::string Zero(Instant now);
  std::string SerialNumber(Instant now);
  std::string NextUnit(Instant now);
  std::string Version(Instant now);

  Load load_;
  std::uint64_t serialNumber_;
  double zero_ = 0;             // grams that count as nothing
  std::optional<double> tare_;  // grams above zero; without it the weight is gross
  std::size_t unit_ = 0;
};

}  // namespace quarlin::instrument
