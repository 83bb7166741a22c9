// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/checksum.h"

#include <algorithm>
#include <array>

#include "base/numbers.h"

namespace quarlin {
namespace {

using Code = std::uint8_t;

Code SumOf(std::string_view text) {
  Code sum = 0;
  for (const char c : text) sum = static_cast<Code>(sum + static_cast<Code>(c));
  return sum;
}

Code XorOf(std::string_view text) {
  Code bits = 0;
  for (const char c : text) bits = static_cast<Code>(bits ^ static_cast<Code>(c));
  return bits;
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

Code PairsOf(std::string_view text) {
  Code sum = 0;
  for (std::size_t at = 0; at < text.size(); at += 2) {
    sum = static_cast<Code>(sum + PairValue(text.substr(at, 2)));
  }
  return sum;
}

// What an archive record or a Motorola record has before the summed part.
constexpr std::size_t motorolaHead = 2;  // "S1"
constexpr std::size_t archiveHead = 12;  // "WREC,0,0000," with its type

// `text` without its first `head` and last `tail` characters; empty when it is not longer.
std::string_view Inside(std::string_view text, std::size_t head, std::size_t tail) {
  if (text.size() <= head + tail) return {};
  return text.substr(head, text.size() - head - tail);
}

std::uint32_t Sum(std::string_view text) {
  return SumOf(text);
}

std::uint32_t NegativeSum(std::string_view text) {
  return static_cast<Code>(-SumOf(text));
}

std::uint32_t ArchiveSum(std::string_view text) {
  return SumOf(Inside(text, archiveHead, 1));  // the last character separates the checksum
}

std::uint32_t PairSum(std::string_view text) {
  return static_cast<Code>(~PairsOf(text));
}

std::uint32_t MotorolaSum(std::string_view text) {
  return PairSum(Inside(text, motorolaHead, 0));
}

std::uint32_t Xor(std::string_view text) {
  return XorOf(text);
}

std::uint32_t XorWithTopBit(std::string_view text) {
  return XorOf(text) | 0x80U;
}

// A cyclic redundancy check as its publishers describe it: the polynomial without its highest term, the
// register at the start, whether the lowest bit of a byte goes first, and what the result is XORed with.
struct Crc {
  int width = 16;
  std::uint32_t polynomial = 0;
  std::uint32_t initial = 0;
  bool reflected = false;
  std::uint32_t finalXor = 0;
};

constexpr std::uint32_t Reversed(std::uint32_t value, int width) {
  std::uint32_t reversed = 0;
  for (int bit = 0; bit < width; ++bit) reversed |= (value >> bit & 1U) << (width - 1 - bit);
  return reversed;
}

// The register is moved right, so that a reflected check needs no more work. One that is not reflected works
// on the mirror image of everything, each byte included.
template <Crc crc>
std::uint32_t CyclicCheck(std::string_view text) {
  constexpr std::uint32_t polynomial = Reversed(crc.polynomial, crc.width);
  std::uint32_t bits = Reversed(crc.initial, crc.width);
  for (const char c : text) {
    const auto code = static_cast<Code>(c);
    bits ^= crc.reflected ? code : Reversed(code, 8);
    for (int bit = 0; bit < 8; ++bit) bits = bits >> 1 ^ ((bits & 1U) != 0 ? polynomial : 0U);
  }
  return (crc.reflected ? bits : Reversed(bits, crc.width)) ^ crc.finalXor;
}

constexpr Crc modbus{.polynomial = 0x8005, .initial = 0xFFFF, .reflected = true};
constexpr Crc xmodem{.polynomial = 0x1021};
constexpr Crc ccittFalse{.polynomial = 0x1021, .initial = 0xFFFF};
constexpr Crc arc{.polynomial = 0x8005, .reflected = true};
constexpr Crc smbus{.width = 8, .polynomial = 0x07};
constexpr Crc crc32{
    .width = 32, .polynomial = 0x04C11DB7, .initial = 0xFFFFFFFF, .reflected = true, .finalXor = 0xFFFFFFFF};

// In the order of ChecksumStyle.
using enum ChecksumStyle;
using enum ChecksumForm;
constexpr std::array<Checksum, checksumCount> checksums{{
    {Archive, "ARC", "Archive", "", Sum, 1, Hex, 2},
    {Motorola, "MOT", "Motorola", "", PairSum, 1, Hex, 2},
    {Sysway, "SYS", "Sysway", "Sysway", Xor, 1, Hex, 2},
    {MotorolaRecord, "MOTR", "Motorola record", "Motorola", MotorolaSum, 1, Hex, 2},
    {ArchiveRecord, "ARCR", "Archive record", "LRC", ArchiveSum, 1, Hex, 2},
    {Modulo256, "MOD8", "Modulo 256", "Mod8", Sum, 1, Raw, 2},
    {Lrc, "LRC", "LRC", "LRC raw", XorWithTopBit, 1, Raw, 1},
    {Crc16Modbus, "CRC16MODBUS", "CRC-16 MODBUS", "CRC16MODBUS", CyclicCheck<modbus>, 2, Hex, 4},
    {Crc16Xmodem, "CRC16XMODEM", "CRC-16 XMODEM", "CRC16XMODEM", CyclicCheck<xmodem>, 2, Hex, 4},
    {Crc16Ccitt, "CRC16CCITT", "CRC-16 CCITT", "CRC16CCITT", CyclicCheck<ccittFalse>, 2, Hex, 4},
    {Crc16Arc, "CRC16ARC", "CRC-16 ARC", "CRC16ARC", CyclicCheck<arc>, 2, Hex, 4},
    {Crc8, "CRC8", "CRC-8", "CRC8", CyclicCheck<smbus>, 1, Hex, 2},
    {Crc32, "CRC32", "CRC-32", "CRC32", CyclicCheck<crc32>, 4, Hex, 8},
    {TwosComplement, "2C", "Two's complement", "2C", NegativeSum, 1, Hex, 2},
}};

constexpr std::array answerChecksums{MotorolaRecord, Sysway,        Modulo256,  ArchiveRecord, Lrc,
                                     Crc16Modbus,    Crc16Xmodem,   Crc16Ccitt, Crc16Arc,      Crc8,
                                     Crc32,          TwosComplement};

bool LowByteFirst(ChecksumForm form) {
  return form == HexLow || form == RawLow;
}

}  // namespace

std::span<const Checksum> AllChecksums() {
  return checksums;
}

std::span<const Checksum> CommonChecksums() {
  return AllChecksums().subspan(static_cast<std::size_t>(Crc16Modbus));
}

bool IsCommon(ChecksumStyle style) {
  return style >= Crc16Modbus;
}

const Checksum& ChecksumOf(ChecksumStyle style) {
  return checksums[static_cast<std::size_t>(style)];
}

std::span<const ChecksumStyle> AnswerChecksums() {
  return answerChecksums;
}

std::string ChecksumText(std::uint32_t value, std::size_t bytes, ChecksumForm form) {
  std::string text;
  for (std::size_t at = 0; at < bytes; ++at) {
    const auto code = static_cast<Code>(value >> 8 * (LowByteFirst(form) ? at : bytes - 1 - at));
    if (form == Raw || form == RawLow) {
      text += static_cast<char>(code);
    } else {
      text += Hexadecimal(code, 2);
    }
  }
  return text;
}

std::string ComputeChecksum(std::string_view text, ChecksumStyle style) {
  const Checksum& checksum = ChecksumOf(style);
  return ChecksumText(checksum.compute(text), checksum.bytes, checksum.form);
}

std::string ComputeChecksum(std::string_view text, std::int16_t style) {
  if (style < 0 || static_cast<std::size_t>(style) >= checksums.size()) return {};
  return ComputeChecksum(text, static_cast<ChecksumStyle>(style));
}

}  // namespace quarlin
