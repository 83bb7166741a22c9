// SPDX-License-Identifier: GPL-3.0-or-later
#include "receive/parser.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

#include "base/numbers.h"

namespace quarlin {
namespace {

// An instruction that looks at one received character only.
struct Instruction {
  char letter;
  std::string (*piece)(std::uint8_t code, const Clock& clock);
};

std::string Character(std::uint8_t code) {
  return std::string(1, static_cast<char>(code));
}

// The letters of ASCII and Latin-1 lie 32 below their small ones; 0xD7 and 0xF7 between them are signs.
constexpr std::uint8_t caseDistance = 0x20;

bool IsCapital(std::uint8_t code) {
  return (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
}

std::string Capital(std::uint8_t code, const Clock&) {
  const bool isSmall = code >= caseDistance && IsCapital(static_cast<std::uint8_t>(code - caseDistance));
  return Character(static_cast<std::uint8_t>(isSmall ? code - caseDistance : code));
}

std::string Small(std::uint8_t code, const Clock&) {
  return Character(static_cast<std::uint8_t>(IsCapital(code) ? code + caseDistance : code));
}

std::string BinaryOfHexDigit(std::uint8_t code, const Clock&) {
  const int digit = HexDigitValue(static_cast<char>(code));
  return digit < 0 ? std::string() : BinaryText(static_cast<std::uint32_t>(digit), 4);
}

constexpr std::array<Instruction, 11> instructions{{
    {'E', [](std::uint8_t code, const Clock&) { return Hexadecimal(code, 2); }},
    {'e', BinaryOfHexDigit},
    {'b', [](std::uint8_t code, const Clock&) { return BinaryText(code, 8); }},
    {'A', [](std::uint8_t code, const Clock&) { return PaddedDecimal(code, 3); }},
    {'U', Capital},
    {'u', Small},
    {'L', [](std::uint8_t, const Clock&) { return std::string("\r\n"); }},
    {'C', [](std::uint8_t, const Clock&) { return std::string(); }},
    {'T', [](std::uint8_t, const Clock& clock) { return TimeText(clock.Local()); }},
    {'D', [](std::uint8_t, const Clock& clock) { return DateText(clock.Local()); }},
    {'R', [](std::uint8_t code, const Clock&) { return Character(code); }},
}};

// An instruction that collects digits for as long as it is repeated, and then writes their number.
struct NumberInstruction {
  char letter;
  int base;
  std::string (*write)(std::uint32_t value, std::size_t digits);
};

std::string DecimalNumber(std::uint32_t value, std::size_t digits) {
  return PaddedDecimal(value, static_cast<int>(digits));
}

// Code 0 becomes 1: a result can be shown and logged as text.
std::string CodedCharacter(std::uint32_t value, std::size_t) {
  if (value > 255) return {};
  return Character(static_cast<std::uint8_t>(std::max(value, std::uint32_t{1})));
}

constexpr std::array<NumberInstruction, 6> numberInstructions{{
    {'H', 16, DecimalNumber},
    {'h', 16, DecimalNumber},
    {'W', 10, CodedCharacter},
    {'w', 10, CodedCharacter},
    {'S', 16, CodedCharacter},
    {'s', 16, CodedCharacter},
}};

template <typename Table>
auto Find(const Table& table, std::string_view letter) -> decltype(table.data()) {
  const auto row = std::find_if(table.begin(), table.end(), [&](const auto& each) {
    return letter == std::string_view(&each.letter, 1);
  });
  return row == table.end() ? nullptr : &*row;
}

constexpr std::size_t mostHexDigits = 8;

std::optional<std::uint32_t> NumberIn(std::string_view digits, int base) {
  if (base == 16 && digits.size() > mostHexDigits) return std::nullopt;
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

std::string Translation(std::string_view flag, std::string_view digits) {
  const NumberInstruction* instruction = Find(numberInstructions, flag);
  if (instruction == nullptr) return {};
  const auto value = NumberIn(digits, instruction->base);
  return value ? instruction->write(*value, digits.size()) : std::string();
}

// The character at that place as a text; empty beyond the end.
std::string_view At(std::string_view text, std::size_t place) {
  return place < text.size() ? text.substr(place, 1) : std::string_view();
}

}  // namespace

std::string Parser::ParseReceived(std::string_view format, std::string_view received) {
  std::string output;
  std::size_t place = 0;  // in the format; it runs ahead of the answer by the blanks
  for (std::size_t i = 0; i < format.size(); ++i) {
    for (; At(format, place) == " "; ++place) output += ParserNumberStep("", "") + " ";
    const std::string_view letter = At(format, place++);
    const std::string_view character = i < received.size() ? At(received, i) : At(format, i);
    if (Find(numberInstructions, letter) != nullptr) {
      output += ParserNumberStep(letter, character);
      continue;
    }
    output += ParserNumberStep("", "");
    if (const Instruction* instruction = Find(instructions, letter)) {
      output += instruction->piece(static_cast<std::uint8_t>(character.front()), clock_);
    } else {
      output += letter;
    }
  }
  return output + ParserNumberStep("", "");
}

std::string Parser::ParserNumberStep(std::string_view flag, std::string_view character) {
  std::string result;
  if (!ParserNumberFlag.empty() && flag == ParserNumberFlag) {
    ParserDigits += character;
  } else {
    result = Translation(ParserNumberFlag, ParserDigits);
    ParserDigits = character;
  }
  ParserNumberFlag = flag;
  return result;
}

}  // namespace quarlin
