// SPDX-License-Identifier: GPL-3.0-or-later
// What the days and months are called.
#pragma once

#include <array>
#include <string_view>

namespace quarlin::vbs {

inline constexpr std::array<std::u16string_view, 12> monthNames{
    u"January", u"February", u"March",     u"April",   u"May",      u"June",
    u"July",    u"August",   u"September", u"October", u"November", u"December"};

inline constexpr std::array<std::u16string_view, 7> weekdayNames{
    u"Sunday", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday"};

}  // namespace quarlin::vbs
