// SPDX-License-Identifier: GPL-3.0-or-later
// The command line of the simulated instrument.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "instrument/settings.h"

namespace quarlin::instrument {

struct Options {
  Settings settings;
  std::string link;                  // also make this symbolic link to the port; empty is none
  std::optional<std::uint16_t> tcp;  // play on this port instead of a pseudo-terminal
  std::optional<std::uint16_t> udp;
  std::string bind;               // the address of such a port; empty is 127.0.0.1
  std::vector<std::string> join;  // two links to joined pseudo-terminals, instead of playing; or empty
  bool quiet = false;             // no counts at the end
  bool help = false;
  bool version = false;
  std::string error;  // one line for the user; when it is not empty, the rest does not count
};

// `arguments` without the name of the program. An option and its value are two arguments or one with "="
// between; the last of two equal options counts.
Options ParseOptions(std::span<const char* const> arguments);

std::string HelpText();

}  // namespace quarlin::instrument
