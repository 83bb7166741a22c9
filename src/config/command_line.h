// SPDX-License-Identifier: GPL-3.0-or-later
// What the words on the command line ask for at the start of the program.
#pragma once

#include <string_view>

namespace quarlin {

// In the order in which the start acts on them.
struct CommandLine {
  bool load = false;      // load the configuration and connect
  bool dialog = false;    // the dialog test
  bool log = false;       // the log of the traffic
  bool logPar = false;    // the log of the parser's output
  bool sequence = false;  // send the sequence file
  bool run = false;       // connect if need be, and start the cycle
  bool exit = false;      // end the program when the run has completed
};

// `arguments` are joined by one blank, without the program's own path. A keyword counts in any case and
// wherever it stands, also inside another word; the one for the traffic's log begins with a blank, so
// that it is not found in a first word.
CommandLine ParseCommandLine(std::string_view arguments);

}  // namespace quarlin
