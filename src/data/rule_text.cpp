// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/rule_text.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr double mostPlaces = 10'000;

int PlaceIn(std::string_view text) {
  const auto place = NumberOf(text);
  if (!place || *place < 1 || *place > mostPlaces || *place != std::floor(*place)) {
    throw std::invalid_argument(
        fmt::format("\"{}\" is no place: 1 is the first; commas part several.", text));
  }
  return static_cast<int>(*place);
}

}  // namespace

std::vector<NumberRule> RulesIn(NumberRule::Kind kind, std::string_view text, DecimalSign decimal) {
  if (kind == NumberRule::Kind::Group) {
    return {NumberRule{.kind = kind, .expression = std::string(text), .decimal = decimal}};
  }
  std::vector<NumberRule> rules;
  while (true) {
    const std::size_t comma = text.find_first_of(",;");
    rules.push_back({.kind = kind, .place = PlaceIn(text.substr(0, comma)), .decimal = decimal});
    if (comma == std::string_view::npos) return rules;
    if (rules.size() == TableSettings::mostRules) {
      throw std::invalid_argument(
          fmt::format("At most {} curves can be read at once.", TableSettings::mostRules));
    }
    text.remove_prefix(comma + 1);
  }
}

}  // namespace quarlin
