// SPDX-License-Identifier: GPL-3.0-or-later
// Dates as texts, in the way of a locale.
#pragma once

#include <string>

#include "script/values/locale.h"

namespace quarlin::vbs {

// In the order of the language's numbers for them.
enum class DateForm {
  General,  // date and time; no time at midnight, no date on day 0
  LongDate,
  ShortDate,
  LongTime,
  ShortTime  // of 24 hours everywhere
};

std::u16string TextOfDate(double days, DateForm form, const Locale& locale);

}  // namespace quarlin::vbs
