// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/options.h"

#include <array>
#include <utility>

namespace quarlin::script_tool {
namespace {

constexpr std::array<std::pair<std::string_view, ActionKind>, 3> hookOptions{{
    {"--input", ActionKind::Input},
    {"--receive", ActionKind::Receive},
    {"--send", ActionKind::Send},
}};

const ActionKind* HookOption(std::string_view argument) {
  for (const auto& [name, kind] : hookOptions) {
    if (name == argument) return &kind;
  }
  return nullptr;
}

void TakeWord(Options& options, std::string_view word) {
  if (options.file.empty()) {
    options.file = word;
  } else {
    options.actions.push_back({ActionKind::Run, std::string(word)});
  }
}

std::string Complaint(const Options& options) {
  if (options.file.empty()) return options.inventory ? "no folder" : "no script file";
  if (options.check && !options.actions.empty()) return "--check only compiles: nothing is run";
  if (options.inventory && !options.actions.empty()) return "--inventory takes one folder";
  if (options.inventory && options.check) return "--inventory and --check are not for one run";
  if (options.json && !options.inventory && !options.check) return "--json is for --inventory and --check";
  return {};
}

}  // namespace

Options ParseOptions(std::span<const char* const> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.help = true;
      return options;
    }
    if (argument == "--version") {
      options.version = true;
      return options;
    }
    if (argument == "--") {
      options.arguments.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
      break;
    }
    if (argument == "--check") {
      options.check = true;
    } else if (argument == "--inventory") {
      options.inventory = true;
    } else if (argument == "--json") {
      options.json = true;
    } else if (const ActionKind* kind = HookOption(argument)) {
      if (++i == arguments.size()) {
        options.error = std::string(argument) + " needs a text";
        return options;
      }
      options.actions.push_back({*kind, arguments[i]});
    } else if (argument.starts_with("-")) {
      options.error = "unknown option " + std::string(argument);
      return options;
    } else {
      TakeWord(options, argument);
    }
  }
  options.error = Complaint(options);
  return options;
}

std::string_view HelpText() {
  return R"(Runs a script of Quarlin without its window.

  quarlin-script FILE [PROCEDURE | --input TEXT | --receive TEXT | --send TEXT]... [-- ARGUMENT...]
  quarlin-script --check [--json] FILE
  quarlin-script --inventory [--json] FOLDER

The script is loaded with all its objects and its top-level code is run; then comes, in the order given:
  PROCEDURE       run this procedure
  --input TEXT    run ReceiveChar for each character, print what it hands back
  --receive TEXT  run ReceiveString, print what it hands back
  --send TEXT     run SendString, print what it hands back
A hook that the script has not leaves the text as it is. Whatever stands behind -- is in WScript.Arguments.

  --check         only compile, and warn of what is probably a slip: a procedure that is nearly named like a
                  hook, a name that is assigned once and never read, a member that is not there
  --inventory     look through all scripts of a folder: which compile, and what they need that is not here
  --json          what --check or --inventory found, for programs
  --help          this text
  --version       version and licence

AppendLog's text goes to standard output as it stands, WScript.Echo writes lines there, message boxes go to
standard error. The language goes by the name: VBScript where it holds ".vbs", otherwise JScript. File names in
the script begin at its own folder.

Exit status: what the script says with WScript.Quit or FormMain.Finish; else 0, or 1 after an error in the
script, which is reported on standard error with "error NUMBER line N column C DESCRIPTION" as the last line,
or 2 for wrong usage or a file that cannot be read. --inventory: 0 when all scripts compile and nothing is
missing, else 1. Warnings do not change it.
)";
}

}  // namespace quarlin::script_tool
