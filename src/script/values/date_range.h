// SPDX-License-Identifier: GPL-3.0-or-later
// The days that a Date can be: the years 100 to 9999.
#pragma once

namespace quarlin::vbs {

inline constexpr double firstDate = -657434;
inline constexpr double firstBeyondDates = 2958466;

constexpr bool IsInDateRange(double days) {
  // The time of day counts away from day 0, so the first day reaches almost to the day before.
  return days > firstDate - 1 && days < firstBeyondDates;
}

}  // namespace quarlin::vbs
