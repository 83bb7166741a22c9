// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <cstddef>
#include <cstdint>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

// How the letters of a run of code units find their other case.
enum class Pairing {
  Apart,      // the lower case stands `distance` behind the upper case
  EvenUpper,  // upper and lower case stand side by side, the upper one on an even code
  OddUpper
};

struct Run {
  char16_t first;  // of Apart: the upper-case letters only
  char16_t last;
  Pairing pairing;
  char16_t distance = 0;
};

// In ascending order. The micro sign is no letter here: its upper case would be no character of Latin-1.
constexpr auto runs = std::to_array<Run>({
    {0x0041, 0x005A, Pairing::Apart, 0x20}, {0x00C0, 0x00D6, Pairing::Apart, 0x20},
    {0x00D8, 0x00DE, Pairing::Apart, 0x20}, {0x0100, 0x012F, Pairing::EvenUpper},
    {0x0132, 0x0137, Pairing::EvenUpper},   {0x0139, 0x0148, Pairing::OddUpper},
    {0x014A, 0x0177, Pairing::EvenUpper},   {0x0179, 0x017E, Pairing::OddUpper},
    {0x0386, 0x0386, Pairing::Apart, 0x26}, {0x0388, 0x038A, Pairing::Apart, 0x25},
    {0x038C, 0x038C, Pairing::Apart, 0x40}, {0x038E, 0x038F, Pairing::Apart, 0x3F},
    {0x0391, 0x03A1, Pairing::Apart, 0x20}, {0x03A3, 0x03AB, Pairing::Apart, 0x20},
    {0x03D8, 0x03EF, Pairing::EvenUpper},   {0x0400, 0x040F, Pairing::Apart, 0x50},
    {0x0410, 0x042F, Pairing::Apart, 0x20}, {0x0460, 0x0481, Pairing::EvenUpper},
    {0x048A, 0x04BF, Pairing::EvenUpper},   {0x04C0, 0x04C0, Pairing::Apart, 0x0F},
    {0x04C1, 0x04CE, Pairing::OddUpper},    {0x04D0, 0x052F, Pairing::EvenUpper},
});

// Pairs with one side that the runs do not reach, or that work in one direction only.
struct Single {
  char16_t from;
  char16_t to;
};
constexpr auto uppers =
    std::to_array<Single>({{0x00FF, 0x0178}, {0x0131, 0x0049}, {0x017F, 0x0053}, {0x03C2, 0x03A3}});
constexpr auto lowers = std::to_array<Single>({{0x0130, 0x0069}, {0x0178, 0x00FF}});

constexpr char16_t firstBeyondRuns = 0x0530;

constexpr bool IsUpperOfPair(const Run& run, char16_t unit) {
  return (unit % 2 == 0) == (run.pairing == Pairing::EvenUpper);
}

constexpr char16_t Shifted(char16_t unit, int by) {
  return static_cast<char16_t>(unit + by);
}

template <std::size_t count>
constexpr char16_t Looked(const std::array<Single, count>& table, char16_t unit) {
  for (const Single& row : table) {
    if (row.from == unit) return row.to;
  }
  return unit;
}

constexpr char16_t LowerByRule(char16_t unit) {
  if (const char16_t single = Looked(lowers, unit); single != unit) return single;
  for (const Run& run : runs) {
    if (unit < run.first || unit > run.last) continue;
    if (run.pairing == Pairing::Apart) return Shifted(unit, run.distance);
    return IsUpperOfPair(run, unit) ? Shifted(unit, 1) : unit;
  }
  return unit;
}

constexpr char16_t UpperByRule(char16_t unit) {
  if (const char16_t single = Looked(uppers, unit); single != unit) return single;
  for (const Run& run : runs) {
    if (run.pairing == Pairing::Apart) {
      if (unit >= run.first + run.distance && unit <= run.last + run.distance) {
        return Shifted(unit, -run.distance);
      }
    } else if (unit >= run.first && unit <= run.last) {
      return IsUpperOfPair(run, unit) ? unit : Shifted(unit, -1);
    }
  }
  return unit;
}

// Latin-1, where nearly all texts stay, is looked up.
using LatinTable = std::array<char16_t, 256>;

constexpr LatinTable TableOf(char16_t (*rule)(char16_t)) {
  LatinTable table{};
  for (std::size_t code = 0; code < table.size(); ++code) table[code] = rule(static_cast<char16_t>(code));
  return table;
}

constexpr LatinTable latinUppers = TableOf(UpperByRule);
constexpr LatinTable latinLowers = TableOf(LowerByRule);

constexpr char32_t replacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& utf8, char32_t code) {
  const auto put = [&utf8](char32_t byte) { utf8 += static_cast<char>(static_cast<unsigned char>(byte)); };
  const auto putTail = [&](int shift) { put(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0U | (code >> 6));
    return putTail(0);
  }
  if (code < 0x10000) {
    put(0xE0U | (code >> 12));
    putTail(6);
    return putTail(0);
  }
  put(0xF0U | (code >> 18));
  putTail(12);
  putTail(6);
  putTail(0);
}

void AppendUtf16(std::u16string& text, char32_t code) {
  if (code < 0x10000) {
    text += static_cast<char16_t>(code);
    return;
  }
  text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
  text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
}

// The length that a lead byte promises, 0 for a byte that begins nothing.
std::size_t PromisedLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

// Takes the character at the start of `utf8`, or one byte of what is none as the replacement.
char32_t TakeCharacter(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8.front());
  const std::size_t length = PromisedLength(lead);
  char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
  bool good = length != 0 && length <= utf8.size();
  for (std::size_t place = 1; good && place < length; ++place) {
    const auto next = static_cast<unsigned char>(utf8[place]);
    good = (next & 0xC0U) == 0x80;
    code = (code << 6) | (next & 0x3FU);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool isNone = IsHighSurrogate(code) || IsLowSurrogate(code) || code > 0x10FFFF;
  good = good && !overlong && !isNone;
  utf8.remove_prefix(good ? length : 1);
  return good ? code : replacement;
}

}  // namespace

char16_t UpperOf(char16_t unit) {
  if (unit < latinUppers.size()) return latinUppers[unit];
  return unit < firstBeyondRuns ? UpperByRule(unit) : unit;
}

char16_t LowerOf(char16_t unit) {
  if (unit < latinLowers.size()) return latinLowers[unit];
  return unit < firstBeyondRuns ? LowerByRule(unit) : unit;
}

std::string Utf8Of(std::u16string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    char32_t code = text[place];
    if (IsHighSurrogate(code) && place + 1 < text.size() && IsLowSurrogate(text[place + 1])) {
      ++place;
      code = 0x10000 + ((code - 0xD800) << 10) + (text[place] - 0xDC00U);
    } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
      code = replacement;
    }
    AppendUtf8(utf8, code);
  }
  return utf8;
}

std::u16string Utf16Of(std::string_view utf8) {
  std::u16string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) AppendUtf16(text, TakeCharacter(utf8));
  return text;
}

}  // namespace quarlin::vbs
