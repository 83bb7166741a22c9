// The command line of the simulated instrument.
#pragma once

#include <span>
#include <string>

#include "instrument/settings.h"

namespace quarlin::instrument {

struct Options {
  Settings settings;
  std::string link;    // also make this symbolic link to the port; empty is none
  bool quiet = false;  // no counts at the end
  bool help = false;
  std::string error;  // one line for the user; when it is not empty, the rest does not count
};

// `arguments` without the name of the program. An option and its value are two arguments or one with "="
// between; the last of two equal options counts.
Options ParseOptions(std::span<const char* const> arguments);

std::string HelpText();

}  // namespace quarlin::instrument
