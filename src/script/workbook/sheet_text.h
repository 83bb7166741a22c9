// SPDX-License-Identifier: GPL-3.0-or-later
// What a cell shows, as far as its width and its dates need that.
#pragma once

#include <string>

#include "script/workbook/sheet.h"

namespace quarlin::vbs::sheets {

inline constexpr double widestColumn = 255;

// The number format of a date that has none: the time only where there is one, the day only where it is
// not day 0.
std::u16string DateFormatOf(double days);

// About how wide a column must be, in characters. A formula counts nothing: nobody has worked it out.
double WidthOf(const Cell& cell, const CellStyle& style);

}  // namespace quarlin::vbs::sheets
