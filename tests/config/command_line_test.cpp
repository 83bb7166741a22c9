// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/command_line.h"

#include <gtest/gtest.h>

#include <string>

namespace quarlin {
namespace {

std::string Asked(std::string_view arguments) {
  const CommandLine line = ParseCommandLine(arguments);
  std::string asked;
  if (line.load) asked += "load ";
  if (line.dialog) asked += "dialog ";
  if (line.log) asked += "log ";
  if (line.logPar) asked += "logPar ";
  if (line.sequence) asked += "sequence ";
  if (line.run) asked += "run ";
  if (line.exit) asked += "exit ";
  return asked;
}

TEST(CommandLine, FindsItsKeywordsAnywhere) {
  const struct {
    std::string_view given;
    std::string_view expected;
  } cases[] = {
      {"", ""},
      {"LOAD RUN EXIT", "load run exit "},
      {"exit Run lOAD", "load run exit "},
      {"dialog sequence", "dialog sequence "},
      {"DIALOGSEQUENCE", "dialog sequence "},
      {"LOG", ""},
      {"LOAD LOG", "load log "},
      {"LOGPAR", "logPar "},
      {"LOAD LOGPAR", "load log logPar "},
      {"LOGPAR LOG", "log logPar "},
      {"LOAD logbook", "load log "},
      {"LOAD dialog", "load dialog "},
      {"/home/bruno/prune.txt", "run "},
      {"download", "load "},
      {"LOA D EX IT", ""},
      {"R\xFCN", ""},
  };
  for (const auto& row : cases) EXPECT_EQ(Asked(row.given), row.expected) << row.given;
}

}  // namespace
}  // namespace quarlin
