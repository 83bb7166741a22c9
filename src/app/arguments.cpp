#include "app/arguments.h"

#include <string_view>

namespace quarlin {

Arguments ReadArguments(int argc, char** argv) {
  Arguments arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--headless") {
      arguments.headless = true;
    } else if (argument == "--help" || argument == "-h") {
      arguments.help = true;
    } else if (argument == "--version") {
      arguments.version = true;
    } else {
      if (!arguments.commandLine.empty()) arguments.commandLine += ' ';
      arguments.commandLine += argument;
    }
  }
  return arguments;
}

}  // namespace quarlin
