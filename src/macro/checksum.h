// The protocol checksums that the macro language inserts and the receive loop verifies.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quarlin {

enum class ChecksumStyle : std::int16_t {
  Archive,         // sum of all codes modulo 256, two hexadecimal digits
  Motorola,        // one's complement of the sum of the hexadecimal pairs
  Sysway,          // XOR of all codes, two hexadecimal digits
  MotorolaRecord,  // as Motorola, from the third character on, behind "Sx"
  ArchiveRecord,   // as Archive, from the 13th character, behind "WREC,0,0000,", to the last but one
  Modulo256,       // as Archive, but one raw character
  Lrc              // XOR of all codes with bit 7 set, one raw character
};

// The checksum of `text`: two upper-case hexadecimal digits, or one raw character. An empty text has the
// checksum of nothing. Pairs are read up to the first character that is no digit, so "S1" counts 0.
std::string ComputeChecksum(std::string_view text, ChecksumStyle style);

// The same by style number; empty for a number that is no style.
std::string ComputeChecksum(std::string_view text, std::int16_t style);

}  // namespace quarlin
