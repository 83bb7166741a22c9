// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/checksum_macros.h"

#include <array>
#include <optional>
#include <string_view>

#include "base/numbers.h"
#include "macro/checksum.h"
#include "macro/expander.h"

namespace quarlin {
namespace {

using enum ChecksumStyle;

// The protocols' sums are inserted and kept in these two orders, which differ in the place of Lrc.
constexpr std::array inserted{Motorola, Archive, Modulo256, Lrc, Sysway, MotorolaRecord, ArchiveRecord};
constexpr std::array kept{Motorola, Archive, Modulo256, Sysway, Lrc, MotorolaRecord, ArchiveRecord};

constexpr std::string_view inserting = "[CHECKSUM";
constexpr std::string_view keeping = "[CCHECKSUM";

struct MacroForm {
  std::string_view ending;  // of the macro, behind its word
  ChecksumForm form;
};

// In the order of ChecksumForm.
constexpr std::array<MacroForm, 4> forms{{
    {"]", ChecksumForm::Hex},
    {"LOW]", ChecksumForm::HexLow},
    {"RAW]", ChecksumForm::Raw},
    {"RAWLOW]", ChecksumForm::RawLow},
}};

// Nothing where the kept checksum cannot be written so.
struct RecallingMacro {
  std::string_view macro;
  std::optional<std::string> (*write)(const std::string& checksum);
};

std::optional<std::string> AsItIs(const std::string& checksum) {
  return checksum;
}

std::optional<std::string> DecimalCode(const std::string& checksum) {
  if (checksum.empty()) return std::nullopt;
  return PaddedDecimal(static_cast<std::uint8_t>(checksum.front()), 3);
}

// A lone digit gets a zero in front of it, a lone letter does not: "05" but "A".
std::optional<std::string> HexCode(const std::string& checksum) {
  if (checksum.empty()) return std::nullopt;
  const auto code = static_cast<std::uint8_t>(checksum.front());
  return Hexadecimal(code, code < 10 ? 2 : 1);
}

constexpr std::array<RecallingMacro, 3> recalling{{
    {"[CHECKSUMCALC]", AsItIs},
    {"[CHECKSUMCALCA]", DecimalCode},
    {"[CHECKSUMCALCH]", HexCode},
}};

struct Place {
  std::size_t at, size;
};

// The first macro that is made of these three.
std::optional<Place> Find(std::string_view text, std::string_view opening, std::string_view word,
                          std::string_view ending) {
  for (std::size_t at = text.find(opening); at != std::string_view::npos; at = text.find(opening, at + 1)) {
    const std::string_view behind = text.substr(at + opening.size());
    if (behind.starts_with(word) && behind.substr(word.size()).starts_with(ending)) {
      return Place{at, opening.size() + word.size() + ending.size()};
    }
  }
  return std::nullopt;
}

void InsertProtocolSums(std::string& text) {
  for (const ChecksumStyle style : inserted) {
    const auto place = Find(text, inserting, ChecksumOf(style).word, "]");
    if (!place) continue;
    text.replace(place->at, place->size, ComputeChecksum(std::string_view(text).substr(0, place->at), style));
  }
}

void KeepProtocolSums(std::string& text, std::string& lastChecksum) {
  for (const ChecksumStyle style : kept) {
    const auto place = Find(text, keeping, ChecksumOf(style).word, "]");
    if (!place) continue;
    lastChecksum = ComputeChecksum(std::string_view(text).substr(0, place->at), style);
    text.erase(place->at, place->size);
  }
}

void RecallKeptSum(std::string& text, const std::string& lastChecksum) {
  for (const auto& [macro, write] : recalling) {
    if (text.find(macro) == std::string::npos) continue;
    if (const auto written = write(lastChecksum)) ReplaceFirst(text, macro, *written);
  }
}

void InsertCommonSums(std::string& text) {
  if (text.find(inserting) == std::string::npos) return;
  for (const Checksum& checksum : CommonChecksums()) {
    for (const auto& [ending, form] : forms) {
      const auto place = Find(text, inserting, checksum.word, ending);
      if (!place) continue;
      const std::uint32_t value = checksum.compute(std::string_view(text).substr(0, place->at));
      text.replace(place->at, place->size, ChecksumText(value, checksum.bytes, form));
    }
  }
}

}  // namespace

std::string ChecksumMacro(const Checksum& checksum, ChecksumForm form) {
  std::string macro(inserting);
  macro += checksum.word;
  macro += IsCommon(checksum.style) ? forms.at(static_cast<std::size_t>(form)).ending : "]";
  return macro;
}

void ExpandChecksums(std::string& text, std::string& lastChecksum) {
  InsertProtocolSums(text);
  KeepProtocolSums(text, lastChecksum);
  RecallKeptSum(text, lastChecksum);
  InsertCommonSums(text);
}

}  // namespace quarlin
