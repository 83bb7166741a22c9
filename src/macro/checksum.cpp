#include "macro/checksum.h"

#include <algorithm>
#include <array>

#include "base/numbers.h"

namespace quarlin {
namespace {

using Code = std::uint8_t;

Code Sum(std::string_view text) {
  Code sum = 0;
  for (const char c : text) sum = static_cast<Code>(sum + static_cast<Code>(c));
  return sum;
}

Code Xor(std::string_view text) {
  Code bits = 0;
  for (const char c : text) bits = static_cast<Code>(bits ^ static_cast<Code>(c));
  return bits;
}

Code XorWithTopBit(std::string_view text) {
  return Xor(text) | 0x80;
}

int PairValue(std::string_view pair) {
  int value = 0;
  for (const char c : pair) {
    const int digit = HexDigitValue(c);
    if (digit < 0) break;
    value = value * 16 + digit;
  }
  return value;
}

Code ComplementOfPairs(std::string_view text) {
  Code sum = 0;
  for (std::size_t at = 0; at < text.size(); at += 2) {
    sum = static_cast<Code>(sum + PairValue(text.substr(at, 2)));
  }
  return static_cast<Code>(255 - sum);
}

// What an archive record or a Motorola record has before the summed part.
constexpr std::size_t motorolaHead = 2;  // "S1"
constexpr std::size_t archiveHead = 12;  // "WREC,0,0000," with its type

// `text` without its first `head` and last `tail` characters; empty when it is not longer.
std::string_view Inside(std::string_view text, std::size_t head, std::size_t tail) {
  if (text.size() <= head + tail) return {};
  return text.substr(head, text.size() - head - tail);
}

enum class Form { HexDigits, RawCharacter };

struct Style {
  std::size_t head;  // characters left out at the start
  std::size_t tail;  // and at the end
  Code (*compute)(std::string_view);
  Form form;
};

// In the order of ChecksumStyle.
constexpr std::array<Style, 7> styles{{
    {0, 0, Sum, Form::HexDigits},
    {0, 0, ComplementOfPairs, Form::HexDigits},
    {0, 0, Xor, Form::HexDigits},
    {motorolaHead, 0, ComplementOfPairs, Form::HexDigits},
    {archiveHead, 1, Sum, Form::HexDigits},  // the last character separates the checksum
    {0, 0, Sum, Form::RawCharacter},
    {0, 0, XorWithTopBit, Form::RawCharacter},
}};

}  // namespace

std::string ComputeChecksum(std::string_view text, ChecksumStyle style) {
  return ComputeChecksum(text, static_cast<std::int16_t>(style));
}

std::string ComputeChecksum(std::string_view text, std::int16_t style) {
  if (style < 0 || static_cast<std::size_t>(style) >= styles.size()) return {};
  const Style& chosen = styles[static_cast<std::size_t>(style)];
  const Code code = chosen.compute(Inside(text, chosen.head, chosen.tail));
  if (chosen.form == Form::RawCharacter) return std::string(1, static_cast<char>(code));
  return Hexadecimal(code, 2);
}

}  // namespace quarlin
