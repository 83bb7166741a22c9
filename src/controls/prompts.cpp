// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/prompts.h"

#include <algorithm>

namespace quarlin {
namespace {

struct ButtonSet {
  std::array<BoxButton, 3> buttons;
  std::size_t count;
};

using enum BoxButton;
constexpr std::array<ButtonSet, 6> buttonSets{{
    {{Ok}, 1},
    {{Ok, Cancel}, 2},
    {{Abort, Retry, Ignore}, 3},
    {{Yes, No, Cancel}, 3},
    {{Yes, No}, 2},
    {{Retry, Cancel}, 2},
}};

}  // namespace

BoxStyle BoxStyleOf(std::int32_t style) {
  const auto bits = static_cast<std::uint32_t>(style);
  const std::size_t set = bits & 0xF;
  const ButtonSet& chosen = buttonSets[set < buttonSets.size() ? set : 0];
  const std::uint32_t icon = (bits >> 4) & 7;
  const std::size_t defaultIndex = (bits >> 8) & 3;
  return {chosen.buttons, chosen.count, icon <= 4 ? static_cast<BoxIcon>(icon) : BoxIcon::None,
          chosen.buttons[defaultIndex < chosen.count ? defaultIndex : 0]};
}

BoxButton BoxStyle::EscapeButton() const {
  const bool cancels =
      std::count(buttons.begin(), buttons.begin() + static_cast<std::ptrdiff_t>(count), Cancel) > 0;
  return cancels ? Cancel : defaultButton;
}

}  // namespace quarlin
