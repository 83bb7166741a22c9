// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/command_line.h"

#include <string>

#include "base/text.h"

namespace quarlin {

CommandLine ParseCommandLine(std::string_view arguments) {
  struct Keyword {
    std::string_view text;
    bool CommandLine::*asked;
  };
  static constexpr Keyword keywords[] = {
      {"LOAD", &CommandLine::load},     {"DIALOG", &CommandLine::dialog},     {" LOG", &CommandLine::log},
      {"LOGPAR", &CommandLine::logPar}, {"SEQUENCE", &CommandLine::sequence}, {"RUN", &CommandLine::run},
      {"EXIT", &CommandLine::exit},
  };
  CommandLine line;
  const std::string upper = ToUpper(arguments);
  for (const Keyword& keyword : keywords) line.*keyword.asked = upper.find(keyword.text) != std::string::npos;
  return line;
}

}  // namespace quarlin
