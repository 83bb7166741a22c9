// SPDX-License-Identifier: GPL-3.0-or-later
// The command line of quarlin-script.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin::script_tool {

enum class ActionKind { Run, Input, Receive, Send };

// One thing to do with the loaded script.
struct Action {
  ActionKind kind;
  std::string text;  // a procedure's name, or what is handed to a hook
};

struct Options {
  bool help = false;
  bool version = false;
  bool check = false;      // compile only
  bool inventory = false;  // look through all scripts of a folder, which `file` names
  bool json = false;       // what was found, for programs
  std::string file;
  std::vector<Action> actions;         // in the order of the command line
  std::vector<std::string> arguments;  // the script's own, behind "--"
  std::string error;                   // why it cannot be understood; empty when it can
};

Options ParseOptions(std::span<const char* const> arguments);
std::string_view HelpText();

}  // namespace quarlin::script_tool
