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
  if (options.file.empty()) return "no script file";
  if (options.check && !options.actions.empty()) return "--check only compiles: nothing is run";
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
    if (argument == "--check") {
      options.check = true;
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

  quarlin-script FILE [PROCEDURE | --input TEXT | --receive TEXT | --send TEXT]...
  quarlin-script --check FILE

The script is loaded with all its objects and its top-level code is run; then comes, in the order given:
  PROCEDURE       run this procedure
  --input TEXT    run ReceiveChar for each character, print what it hands back
  --receive TEXT  run ReceiveString, print what it hands back
  --send TEXT     run SendString, print what it hands back
A hook that the script has not leaves the text as it is.

  --check         only compile
  --help          this text
  --version       version and licence

AppendLog's text goes to standard output as it stands, message boxes to standard error. The language goes by
the name: VBScript where it holds ".vbs", otherwise JScript. File names in the script begin at its own folder.

Exit status: 0, or 1 after an error in the script, which is reported on standard error with
"error NUMBER line N column C DESCRIPTION" as the last line, or 2 for wrong usage or a file that cannot be
read.
)";
}

}  // namespace quarlin::script_tool
