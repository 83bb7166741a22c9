// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculator/number_format.h"

#include <algorithm>

namespace quarlin {
namespace {

constexpr std::array<NumberFormat, 6> formats{{
    {"41 42", " ", "", ""},
    {"4142", "", "", ""},
    {"41,42", ",", "", ""},
    {"0x41, 0x42", ", ", "0x", "0b"},
    {"$41 $42", " ", "$", "%"},
    {"&H41 &H42", " ", "&H", "&B"},
}};

}  // namespace

std::span<const NumberFormat> NumberFormats() {
  return formats;
}

const NumberFormat* NumberFormatNamed(std::string_view name) {
  const auto* const found = std::find_if(formats.begin(), formats.end(),
                                         [&](const NumberFormat& format) { return format.name == name; });
  return found == formats.end() ? nullptr : found;
}

std::vector<std::string> NumberFormatNames() {
  std::vector<std::string> names;
  names.reserve(formats.size());
  for (const NumberFormat& format : formats) names.emplace_back(format.name);
  return names;
}

}  // namespace quarlin
