// SPDX-License-Identifier: GPL-3.0-or-later
// How bytes are written as numbers: what stands in front of each and between two of them.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/controls.h"

namespace quarlin {

struct NumberFormat {
  std::string_view name;       // an example in hexadecimal, as the user chooses it
  std::string_view separator;  // empty: all digits are written, so that the numbers can be told apart
  std::string_view hexPrefix;
  std::string_view binaryPrefix;
};

std::span<const NumberFormat> NumberFormats();

// Nothing where no format has that name.
const NumberFormat* NumberFormatNamed(std::string_view name);

std::vector<std::string> NumberFormatNames();

// A setting of the main window, though its widget stands in the calculator.
struct NumberControls : ControlGroup {
  using ControlGroup::ControlGroup;
  ComboBox Combo1{*this, "Combo1", NumberFormatNames(), NumberFormats().front().name};  // number format
};

}  // namespace quarlin
