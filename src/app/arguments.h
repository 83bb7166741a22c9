// The command line as the program takes it apart before the keywords are looked for.
#pragma once

#include <string>

namespace quarlin {

struct Arguments {
  bool headless = false;
  bool help = false;
  bool version = false;
  std::string commandLine;  // what is left, joined by one blank
};

Arguments ReadArguments(int argc, char** argv);

}  // namespace quarlin
