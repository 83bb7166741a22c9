// SPDX-License-Identifier: GPL-3.0-or-later
// The command line of quarlin-data.
#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>

#include "data/filter.h"
#include "data/number_rule.h"

namespace quarlin::data_tool {

enum class Verb { Stats, Filter, Plot };

struct Options {
  Verb verb = Verb::Stats;
  std::string file;                   // empty: standard input
  std::optional<NumberRule> rule;     // which number of a row; nothing: the first one
  std::optional<int> timeColumn;      // of the rows' times; nothing: they are rows, or come at the rate
  bool json = false;                  // stats
  FilterSettings filter;              // plot: of kind None where only the raw curve is drawn
  bool zeroPhase = false;             // filter, plot
  std::optional<std::string> folder;  // filter: where both files are to be written, too
  std::string picture;                // plot: the file to draw, .svg or .png
  std::set<FilterField> given;        // what of `filter` stands on the command line
  bool help = false;
  bool version = false;
  std::string error;  // one line for the user; when it is not empty, the rest does not count
};

// `arguments` without the name of the program. An option and its value are two arguments or one with "="
// between; the last of two equal options counts. Options of `filter` are without an objection.
Options ParseOptions(std::span<const char* const> arguments);

std::string HelpText();

}  // namespace quarlin::data_tool
