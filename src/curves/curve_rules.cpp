// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/curve_rules.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "base/numbers.h"
#include "data/rule_text.h"

namespace quarlin {
namespace {

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
      return RulesIn(NumberRule::Kind::Nth, text);
    case 1:
      return RulesIn(NumberRule::Kind::Column, text);
    case 2:
      return RulesIn(NumberRule::Kind::Group, text);
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
