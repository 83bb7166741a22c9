// SPDX-License-Identifier: GPL-3.0-or-later
#include "config/arguments.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quarlin {
namespace {

enum class Value { None, NextWord, NextWordOrBehindEquals };

struct ToolkitOption {
  std::string_view name;
  Value value;
};

// Some are the toolkit's own, some those of its connection to the display.
constexpr std::array<ToolkitOption, 21> toolkitOptions{{
    {"platform", Value::NextWord},
    {"platformpluginpath", Value::NextWord},
    {"platformtheme", Value::NextWord},
    {"plugin", Value::NextWord},
    {"qwindowgeometry", Value::NextWord},
    {"geometry", Value::NextWord},
    {"qwindowicon", Value::NextWord},
    {"icon", Value::NextWord},
    {"qwindowtitle", Value::NextWord},
    {"title", Value::NextWord},
    {"session", Value::NextWord},
    {"display", Value::NextWord},
    {"name", Value::NextWord},
    {"visual", Value::NextWord},
    {"style", Value::NextWordOrBehindEquals},
    {"stylesheet", Value::NextWordOrBehindEquals},
    {"qmljsdebugger", Value::NextWordOrBehindEquals},
    {"reverse", Value::None},
    {"widgetcount", Value::None},
    {"nograb", Value::None},
    {"dograb", Value::None},
}};

const ToolkitOption* FindToolkitOption(std::string_view name) {
  const auto* const found = std::find_if(toolkitOptions.begin(), toolkitOptions.end(),
                                         [&](const ToolkitOption& option) { return option.name == name; });
  return found == toolkitOptions.end() ? nullptr : found;
}

// How many words a toolkit option is, `option` being what follows its dashes: itself and its value; 0 when
// the toolkit knows none of that name.
int WordsOf(std::string_view option) {
  const std::size_t equals = option.find('=');
  const ToolkitOption* known = FindToolkitOption(option.substr(0, equals));
  if (known == nullptr) return 0;
  if (equals != std::string_view::npos) return known->value == Value::NextWordOrBehindEquals ? 1 : 0;
  return known->value == Value::None ? 1 : 2;
}

// True when the option is one of ours.
bool TakeOwn(std::string_view option, Arguments& arguments) {
  struct OwnOption {
    std::string_view name;
    bool Arguments::*given;
  };
  static constexpr OwnOption ownOptions[] = {
      {"headless", &Arguments::headless}, {"help", &Arguments::help}, {"version", &Arguments::version}};
  for (const OwnOption& own : ownOptions) {
    if (option == own.name) return arguments.*own.given = true;
  }
  return false;
}

}  // namespace

Arguments ReadArguments(int argc, const char* const* argv) {
  Arguments arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--platform" || word == "-platform") arguments.choosesPlatform = true;
    if (word == "-h") {
      arguments.help = true;
    } else if (!word.starts_with("--")) {
      if (!arguments.commandLine.empty()) arguments.commandLine += ' ';
      arguments.commandLine += word;
    } else if (!TakeOwn(word.substr(2), arguments)) {
      const int words = WordsOf(word.substr(2));
      if (words == 0 && arguments.unknownOption.empty()) arguments.unknownOption = word;
      i += std::max(words - 1, 0);
    }
  }
  return arguments;
}

}  // namespace quarlin
