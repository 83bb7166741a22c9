#include "curves/curve_rules.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "base/numbers.h"
#include "base/text.h"

namespace quarlin {
namespace {

constexpr double mostPlaces = 1000;

std::vector<NumberRule> PlaceRules(NumberRule::Kind kind, std::string_view places) {
  std::vector<NumberRule> rules;
  while (true) {
    const std::size_t comma = places.find_first_of(",;");
    const std::string_view one = places.substr(0, comma);
    const auto place = NumberOf(one);
    if (!place || *place < 1 || *place > mostPlaces || *place != std::floor(*place)) {
      throw std::invalid_argument(
          fmt::format("\"{}\" is no place: 1 is the first number or column; commas part several", one));
    }
    rules.push_back({kind, static_cast<int>(*place), {}, {}});
    if (comma == std::string_view::npos) return rules;
    if (rules.size() == mostLiveCurves) {
      throw std::invalid_argument(fmt::format("at most {} curves at once", mostLiveCurves));
    }
    places.remove_prefix(comma + 1);
  }
}

// A text box's number; what is none makes an objection.
double NumberIn(const TextBox& box) {
  return NumberOf(box.Text()).value_or(std::numeric_limits<double>::quiet_NaN());
}

int WholeNumberIn(const TextBox& box) {
  const double number = NumberIn(box);
  const bool whole = number == std::floor(number) && std::abs(number) < 1e9;
  return whole ? static_cast<int>(number) : std::numeric_limits<int>::min();
}

}  // namespace

std::vector<NumberRule> LiveRules(const CurveControls& controls) {
  const std::string& text = controls.txtCurveRule.Text();
  switch (controls.cboCurveRule.ListIndex()) {
    case 0:
      return PlaceRules(NumberRule::Kind::Nth, text);
    case 1:
      return PlaceRules(NumberRule::Kind::Column, text);
    case 2:
      return {NumberRule{NumberRule::Kind::Group, 1, text, {}}};
    default:
      throw std::invalid_argument(fmt::format("\"{}\" is no rule", controls.cboCurveRule.Text()));
  }
}

FilterChoice ChosenFilter(const CurveControls& controls) {
  FilterChoice choice;
  FilterSettings& settings = choice.settings;
  settings.kind = static_cast<FilterKind>(std::max(controls.cboFilter.ListIndex(), 0));
  settings.width = WholeNumberIn(controls.txtFilterWidth);
  settings.alpha = NumberIn(controls.txtFilterAlpha);
  settings.order = WholeNumberIn(controls.txtFilterOrder);
  settings.cutoff = NumberIn(controls.txtFilterCutoff);
  settings.ripple = NumberIn(controls.txtFilterRipple);
  settings.frequency = NumberIn(controls.txtFilterFrequency);
  settings.q = NumberIn(controls.txtFilterQ);
  settings.rate = NumberIn(controls.txtFilterRate);
  choice.bothWays = controls.chkZeroPhase.Checked();
  choice.objection = ObjectionTo(settings);
  return choice;
}

}  // namespace quarlin
