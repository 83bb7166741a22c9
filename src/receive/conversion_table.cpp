// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/conversion_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::size_t mostQuoted = 20;  // bytes of a faulty line

std::optional<std::uint8_t> CodeOf(std::string_view text) {
  text = TrimBlanks(text);
  int base = 10;
  if (EqualsIgnoringCase(text.substr(0, 2), "&H")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint8_t code = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return code;
}

}  // namespace

ConversionTable::ConversionTable(std::string_view content) {
  std::size_t number = 0;
  for (const std::string& line : SplitLines(BytesFromFileText(content))) {
    ++number;
    if (line.empty()) continue;
    if (const std::string fault = TakeLine(line); !fault.empty()) {
      faults_.push_back(fmt::format("line {}: {}", number, fault));
    }
  }
}

// Returns what is wrong with the line, or nothing.
std::string ConversionTable::TakeLine(std::string_view line) {
  const std::size_t tab = line.find('\t');
  if (tab == std::string_view::npos) return "there is no tab between code and text";
  const std::string_view codes = line.substr(0, tab);
  const std::string_view text = line.substr(tab + 1);
  const std::size_t dash = codes.find('-');
  const auto first = CodeOf(codes.substr(0, dash));
  const auto last = dash == std::string_view::npos ? first : CodeOf(codes.substr(dash + 1));
  if (!first || !last) return fmt::format("{} is no code from 000 to 255", CodedText(codes, mostQuoted));
  if (*first > *last) return fmt::format("{} runs backwards", codes);
  if (text.size() > longestText) return fmt::format("the text has more than {} characters", longestText);
  for (std::size_t code = *first; code <= *last; ++code) {
    converted_[code] = true;
    texts_[code] = text;
  }
  return {};
}

// Nearly all of a traffic is left as it is, so a whole block is asked at once.
std::size_t ConversionTable::UnconvertedLength(std::string_view bytes) const {
  constexpr std::size_t block = 32;
  const auto isConverted = [this](char byte) { return converted_[static_cast<unsigned char>(byte)]; };
  std::size_t length = 0;
  for (; length + block <= bytes.size(); length += block) {
    bool any = false;
    for (std::size_t i = 0; i < block; ++i) any |= isConverted(bytes[length + i]);
    if (any) break;
  }
  while (length < bytes.size() && !isConverted(bytes[length])) ++length;
  return length;
}

std::string_view ConversionTable::Convert(std::string_view bytes, std::string& room) const {
  std::size_t length = UnconvertedLength(bytes);
  if (length == bytes.size()) return bytes;
  room.clear();
  for (;;) {
    room += bytes.substr(0, length);
    if (length == bytes.size()) return room;
    room += texts_[static_cast<unsigned char>(bytes[length])];
    bytes.remove_prefix(length + 1);
    length = UnconvertedLength(bytes);
  }
}

}  // namespace quarlin
