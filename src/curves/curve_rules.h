// SPDX-License-Identifier: GPL-3.0-or-later
// The settings of the curves, as what the numbers' room understands.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "curves/curve_controls.h"
#include "data/filter.h"
#include "data/number_rule.h"

namespace quarlin {

// The rules that `cboCurveRule` and `txtCurveRule` say, a curve each; at most TableSettings::mostRules.
// Throws std::invalid_argument with a sentence for the user.
std::vector<NumberRule> LiveRules(const CurveControls& controls);

// The filter as it is set; either `objection` or `settings` holds.
struct FilterChoice {
  FilterSettings settings;
  bool bothWays = false;
  std::optional<FilterObjection> objection;

  bool Usable() const { return settings.kind != FilterKind::None && !objection; }
};
FilterChoice ChosenFilter(const CurveControls& controls);

}  // namespace quarlin
