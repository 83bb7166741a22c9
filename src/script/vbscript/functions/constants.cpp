// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <vector>

#include "script/vbscript/functions/library.h"

namespace quarlin::vbs {
namespace {

struct NamedNumber {
  std::u16string_view name;
  std::int32_t value;
};

struct NamedText {
  std::u16string_view name;
  std::u16string_view value;
};

constexpr auto integers = std::to_array<NamedNumber>({
    {u"vbTrue", -1},
    {u"vbFalse", 0},
    {u"vbUseDefault", -2},

    {u"vbBinaryCompare", 0},
    {u"vbTextCompare", 1},
    {u"vbDatabaseCompare", 2},

    {u"vbUseSystem", 0},
    {u"vbUseSystemDayOfWeek", 0},
    {u"vbSunday", 1},
    {u"vbMonday", 2},
    {u"vbTuesday", 3},
    {u"vbWednesday", 4},
    {u"vbThursday", 5},
    {u"vbFriday", 6},
    {u"vbSaturday", 7},
    {u"vbFirstJan1", 1},
    {u"vbFirstFourDays", 2},
    {u"vbFirstFullWeek", 3},

    {u"vbGeneralDate", 0},
    {u"vbLongDate", 1},
    {u"vbShortDate", 2},
    {u"vbLongTime", 3},
    {u"vbShortTime", 4},

    {u"vbOKOnly", 0},
    {u"vbOKCancel", 1},
    {u"vbAbortRetryIgnore", 2},
    {u"vbYesNoCancel", 3},
    {u"vbYesNo", 4},
    {u"vbRetryCancel", 5},
    {u"vbCritical", 16},
    {u"vbQuestion", 32},
    {u"vbExclamation", 48},
    {u"vbInformation", 64},
    {u"vbDefaultButton1", 0},
    {u"vbDefaultButton2", 256},
    {u"vbDefaultButton3", 512},
    {u"vbDefaultButton4", 768},
    {u"vbApplicationModal", 0},
    {u"vbSystemModal", 4096},
    {u"vbMsgBoxHelpButton", 16384},
    {u"vbOK", 1},
    {u"vbCancel", 2},
    {u"vbAbort", 3},
    {u"vbRetry", 4},
    {u"vbIgnore", 5},
    {u"vbYes", 6},
    {u"vbNo", 7},

    {u"vbEmpty", 0},
    {u"vbNull", 1},
    {u"vbInteger", 2},
    {u"vbLong", 3},
    {u"vbSingle", 4},
    {u"vbDouble", 5},
    {u"vbCurrency", 6},
    {u"vbDate", 7},
    {u"vbString", 8},
    {u"vbObject", 9},
    {u"vbError", 10},
    {u"vbBoolean", 11},
    {u"vbVariant", 12},
    {u"vbDataObject", 13},
    {u"vbDecimal", 14},
    {u"vbByte", 17},
    {u"vbArray", 8192},
});

constexpr auto longs = std::to_array<NamedNumber>({
    {u"vbMsgBoxSetForeground", 65536},
    {u"vbMsgBoxRight", 524288},
    {u"vbMsgBoxRtlReading", 1048576},

    {u"vbBlack", 0x000000},  // blue, green, red
    {u"vbRed", 0x0000FF},
    {u"vbGreen", 0x00FF00},
    {u"vbYellow", 0x00FFFF},
    {u"vbBlue", 0xFF0000},
    {u"vbMagenta", 0xFF00FF},
    {u"vbCyan", 0xFFFF00},
    {u"vbWhite", 0xFFFFFF},

    {u"vbObjectError", -2147221504},
});

constexpr auto texts = std::to_array<NamedText>({
    {u"vbCr", u"\r"},
    {u"vbCrLf", u"\r\n"},
    {u"vbFormFeed", u"\f"},
    {u"vbLf", u"\n"},
    {u"vbNewLine", u"\r\n"},
    {u"vbNullChar", std::u16string_view(u"\0", 1)},
    {u"vbNullString", u""},
    {u"vbTab", u"\t"},
    {u"vbVerticalTab", u"\v"},
});

std::vector<NamedConstant> AllConstants() {
  std::vector<NamedConstant> constants;
  constants.reserve(integers.size() + longs.size() + texts.size());
  for (const auto& [name, value] : integers) {
    constants.push_back({name, Value::Integer(static_cast<std::int16_t>(value))});
  }
  for (const auto& [name, value] : longs) constants.push_back({name, Value::Long(value)});
  for (const auto& [name, value] : texts) constants.push_back({name, Value::String(value)});
  return constants;
}

}  // namespace

std::span<const NamedConstant> LibraryConstants() {
  static const std::vector<NamedConstant> constants = AllConstants();
  return constants;
}

}  // namespace quarlin::vbs
