// SPDX-License-Identifier: GPL-3.0-or-later
// What every program of ours says about its version and its licence.
#pragma once

#include <string>
#include <string_view>

namespace quarlin {

inline constexpr std::string_view copyrightText = "Copyright 2026 the Quarlin developers";
inline constexpr std::string_view licenceAddress = "https://www.gnu.org/licenses/gpl-3.0.html";

std::string_view VersionNumber();  // "1.0.0"

// What "--version" prints: lines, each with its end.
std::string VersionText(std::string_view program);

}  // namespace quarlin
