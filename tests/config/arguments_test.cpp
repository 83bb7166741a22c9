// SPDX-License-Identifier: GPL-3.0-or-later
// Which words are options, and what is left for the keywords.

#include "config/arguments.h"

#include <gtest/gtest.h>

#include <vector>

namespace quarlin {
namespace {

struct Case {
  std::vector<const char*> given;
  std::string commandLine;
  std::string unknown = {};
  std::string flags = {};  // headless, help, version, platform chosen
};

std::string FlagsOf(const Arguments& arguments) {
  std::string flags;
  if (arguments.headless) flags += "h";
  if (arguments.help) flags += "?";
  if (arguments.version) flags += "v";
  if (arguments.choosesPlatform) flags += "p";
  return flags;
}

TEST(Arguments, TellOptionsFromKeywords) {
  const std::vector<Case> cases{
      {{}, ""},
      {{"LOAD", "RUN", "EXIT"}, "LOAD RUN EXIT"},
      {{"LOAD", "--headless", "RUN"}, "LOAD RUN", "", "h"},
      {{"-h"}, "", "", "?"},
      {{"--help", "--version"}, "", "", "?v"},
      {{"--lod"}, "", "--lod"},
      {{"RUN", "--lod", "--log"}, "RUN", "--lod"},
      {{"--Headless"}, "", "--Headless"},
      {{"--headless=1"}, "", "--headless=1"},
      {{"--"}, "", "--"},
      {{"--help", "--download"}, "", "--download", "?"},
      {{"-load", "-", "-run-", "a--b"}, "-load - -run- a--b"},
      {{"/home/bruno/prune.txt", "my exit.cfg"}, "/home/bruno/prune.txt my exit.cfg"},
      {{"--platform", "offscreen", "LOAD"}, "LOAD", "", "p"},
      {{"-platform", "offscreen", "LOAD"}, "-platform offscreen LOAD", "", "p"},
      {{"--platform=offscreen"}, "", "--platform=offscreen"},
      {{"--platform"}, "", "", "p"},
      {{"--title", "RUN", "EXIT"}, "EXIT"},
      {{"--title", "--lod", "EXIT"}, "EXIT"},
      {{"--style", "fusion", "LOAD"}, "LOAD"},
      {{"--style=fusion", "LOAD"}, "LOAD"},
      {{"--stylesheet=log.qss", "RUN"}, "RUN"},
      {{"--qmljsdebugger=port:1", "x"}, "x"},
      {{"--reverse", "LOAD", "--nograb"}, "LOAD"},
      {{"--reverse=1"}, "", "--reverse=1"},
      {{"--geometry", "900x600", "--display", ":1", "LOAD", "--headless"}, "LOAD", "", "h"},
  };
  for (const Case& row : cases) {
    std::vector<const char*> words{"quarlin"};
    words.insert(words.end(), row.given.begin(), row.given.end());
    const Arguments arguments = ReadArguments(static_cast<int>(words.size()), words.data());
    SCOPED_TRACE(testing::PrintToString(row.given));
    EXPECT_EQ(arguments.commandLine, row.commandLine);
    EXPECT_EQ(arguments.unknownOption, row.unknown);
    EXPECT_EQ(FlagsOf(arguments), row.flags);
  }
}

}  // namespace
}  // namespace quarlin
