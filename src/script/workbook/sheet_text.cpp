// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/sheet_text.h"

#include <algorithm>
#include <cmath>

#include "script/values/conversions.h"

namespace quarlin::vbs::sheets {
namespace {

std::size_t LongestLine(std::u16string_view text) {
  std::size_t longest = 0;
  while (true) {
    const std::size_t end = text.find(u'\n');
    longest = std::max(longest, std::min(end, text.size()));
    if (end == text.npos) return longest;
    text.remove_prefix(end + 1);
  }
}

bool IsDigitSign(char16_t unit) {
  return unit == u'0' || unit == u'#';
}

// "0.00" writes two places, "#,##0" sets a sign at every third digit; other signs stand as they are.
std::size_t CharactersOf(double number, const std::u16string& format) {
  if (format == CellStyle().numberFormat || format == u"@") return TextOfDouble(number).size();
  const std::u16string_view positive = std::u16string_view(format).substr(0, format.find(u';'));
  const std::size_t point = std::min(positive.find(u'.'), positive.size());
  const auto places =
      std::count_if(positive.begin() + static_cast<std::ptrdiff_t>(point), positive.end(), IsDigitSign);
  const auto others = std::ranges::count_if(
      positive, [](char16_t unit) { return !IsDigitSign(unit) && unit != u',' && unit != u'"'; });
  const double whole = std::floor(std::fabs(number));
  std::size_t digits = whole < 1 ? 1 : static_cast<std::size_t>(std::log10(whole)) + 1;
  if (positive.find(u',') != positive.npos) digits += (digits - 1) / 3;
  return digits + static_cast<std::size_t>(places + others) + (number < 0 ? 1 : 0);
}

std::size_t CharactersOf(const Cell& cell, const CellStyle& style) {
  if (cell.isFormula) return 0;
  switch (cell.value.GetKind()) {
    case Kind::String:
      return LongestLine(cell.value.AsText());
    case Kind::Double:
      return CharactersOf(cell.value.AsReal(), style.numberFormat);
    case Kind::Date:
      return style.numberFormat.size();
    case Kind::Boolean:
      return cell.value.AsBool() ? std::size_t{4} : std::size_t{5};
    default:
      return 0;
  }
}

}  // namespace

std::u16string DateFormatOf(double days) {
  const double day = std::trunc(days);
  if (day == days && day != 0) return u"yyyy-mm-dd";
  return day == 0 ? u"hh:mm:ss" : u"yyyy-mm-dd hh:mm:ss";
}

double WidthOf(const Cell& cell, const CellStyle& style) {
  constexpr double margin = 1.3;
  constexpr double boldIsWider = 1.1;
  const double scale = style.fontSize / CellStyle().fontSize * (style.bold ? boldIsWider : 1);
  return static_cast<double>(CharactersOf(cell, style)) * scale + margin;
}

}  // namespace quarlin::vbs::sheets
