// SPDX-License-Identifier: GPL-3.0-or-later
// The table of checksums. The macro language inserts them, the receive loop verifies them, the calculator
// shows them, and the simulated instrument sends them; all of them read this table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace quarlin {

enum class ChecksumStyle : std::int16_t {
  // The sums of the instruments' protocols.
  Archive,         // sum of all codes modulo 256
  Motorola,        // one's complement of the sum of the hexadecimal pairs
  Sysway,          // XOR of all codes
  MotorolaRecord,  // as Motorola, from the third character on, behind "Sx"
  ArchiveRecord,   // as Archive, from the 13th character, behind "WREC,0,0000,", to the last but one
  Modulo256,       // as Archive, but one raw character
  Lrc,             // XOR of all codes with bit 7 set, one raw character
  // The sums that are known everywhere, in any order of their bytes.
  Crc16Modbus,
  Crc16Xmodem,
  Crc16Ccitt,
  Crc16Arc,
  Crc8,
  Crc32,
  TwosComplement  // of the sum of all codes modulo 256
};

enum class ChecksumForm {
  Hex,     // upper-case hexadecimal digits, high digit first
  HexLow,  // the same, low byte first
  Raw,     // the bytes themselves, high byte first
  RawLow   // and low byte first
};

struct Checksum {
  ChecksumStyle style;
  std::string_view word;     // its macro is "[CHECKSUM", the word and "]"
  std::string_view caption;  // for the user
  std::string_view listed;   // in the list of what is verified; empty where an answer cannot be
  std::uint32_t (*compute)(std::string_view text);
  std::size_t bytes;       // that the value has, 1 to 4
  ChecksumForm form;       // that it is written in where nothing else is said
  std::size_t characters;  // that an answer's end is compared over; two even where Modulo256 writes one
};

inline constexpr std::size_t checksumCount = 14;

// All of them, in the order of ChecksumStyle.
std::span<const Checksum> AllChecksums();

// Those whose macros have all forms: Crc16Modbus and all behind it.
std::span<const Checksum> CommonChecksums();
bool IsCommon(ChecksumStyle style);

const Checksum& ChecksumOf(ChecksumStyle style);

// What an answer can be verified by, in the order in which the user is offered it.
std::span<const ChecksumStyle> AnswerChecksums();

// `value` of `bytes` bytes as it stands in a text.
std::string ChecksumText(std::uint32_t value, std::size_t bytes, ChecksumForm form);

// The checksum of `text` in its own form: upper-case hexadecimal digits, or one raw character. An empty text
// has the checksum of nothing. Pairs are read up to the first character that is no digit, so "S1" counts 0.
std::string ComputeChecksum(std::string_view text, ChecksumStyle style);

// The same by style number; empty for a number that is no style.
std::string ComputeChecksum(std::string_view text, std::int16_t style);

}  // namespace quarlin
