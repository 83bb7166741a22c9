// SPDX-License-Identifier: GPL-3.0-or-later
// The command line as the program takes it apart before the keywords are looked for.
#pragma once

#include <string>

namespace quarlin {

struct Arguments {
  bool headless = false;
  bool help = false;
  bool version = false;
  bool choosesPlatform = false;  // the toolkit is told where to show the window, so there is a place
  std::string unknownOption;     // the first one that nobody knows; with it the program does not start
  std::string commandLine;       // the other words, joined by one blank
};

// A word that begins with "--" is an option: ours, or the toolkit's, which takes it, and the word behind it
// where the option has a value, from the command line by itself. Everything else is for the keywords, also
// what begins with one dash.
Arguments ReadArguments(int argc, const char* const* argv);

}  // namespace quarlin
