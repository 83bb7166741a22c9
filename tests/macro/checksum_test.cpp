// SPDX-License-Identifier: GPL-3.0-or-later
#include "macro/checksum.h"

#include <gtest/gtest.h>

#include <vector>

using namespace std::string_literals;

namespace quarlin {
namespace {

struct Case {
  ChecksumStyle style;
  std::string text;
  std::string expected;
};

void Check(const std::vector<Case>& cases) {
  for (const auto& [style, text, expected] : cases) {
    EXPECT_EQ(ComputeChecksum(text, style), expected) << static_cast<int>(style) << " of " << text;
  }
}

TEST(Checksum, EveryStyleFollowsItsProtocol) {
  const std::string sRecord = "S1130000285F245F2212226A000424290008237C";
  Check({{ChecksumStyle::Motorola, sRecord, "2A"},
         {ChecksumStyle::MotorolaRecord, sRecord, "2A"},
         {ChecksumStyle::Motorola, "1234", "B9"},
         {ChecksumStyle::MotorolaRecord, "1234", "CB"},
         {ChecksumStyle::Archive, "WREC,0,0000,123456,", "06"},
         {ChecksumStyle::ArchiveRecord, "WREC,0,0000,123456,", "35"},
         {ChecksumStyle::Archive, "READ", "1C"},
         {ChecksumStyle::Sysway, "READ", "12"},
         {ChecksumStyle::Modulo256, "READ", "\x1C"},
         {ChecksumStyle::Lrc, "READ", "\x92"},
         {ChecksumStyle::Lrc, "AB", "\x83"}});
}

TEST(Checksum, ATextTooShortForItsStyleHasTheChecksumOfNothing) {
  Check({{ChecksumStyle::Archive, "", "00"},
         {ChecksumStyle::Motorola, "", "FF"},
         {ChecksumStyle::Sysway, "", "00"},
         {ChecksumStyle::MotorolaRecord, "", "FF"},
         {ChecksumStyle::MotorolaRecord, "S1", "FF"},
         {ChecksumStyle::ArchiveRecord, "", "00"},
         {ChecksumStyle::ArchiveRecord, "WREC,0,0000,1", "00"},
         {ChecksumStyle::ArchiveRecord, "WREC,0,0000,1,", "31"},
         {ChecksumStyle::Modulo256, "", "\0"s},
         {ChecksumStyle::Lrc, "", "\x80"}});
}

TEST(Checksum, PairsAreReadUpToWhatIsNoDigit) {
  Check({{ChecksumStyle::Motorola, "1", "FE"},     // a lone digit is its own value
         {ChecksumStyle::Motorola, "123", "EA"},   // 12 + 3
         {ChecksumStyle::Motorola, "1G", "FE"},    // 1
         {ChecksumStyle::Motorola, "G1", "FF"},    // 0
         {ChecksumStyle::Motorola, "ffFF", "01"},  // wraps, and knows small letters
         {ChecksumStyle::Motorola, "\x00\xFF"s + "10", "EF"}});
}

TEST(Checksum, BytesAreUnsignedAndSumsWrap) {
  Check({{ChecksumStyle::Archive, "\xFF\xFF\x03", "01"},
         {ChecksumStyle::Sysway, "\xFF\x0F\0"s, "F0"},
         {ChecksumStyle::Modulo256, "\xFF\x01", "\0"s}});
}

// The check values are published: those of the digits, and of the empty text what the register starts with.
TEST(Checksum, TheCommonSumsGiveTheirCheckValues) {
  const std::string digits = "123456789";
  Check({{ChecksumStyle::Crc16Modbus, digits, "4B37"},
         {ChecksumStyle::Crc16Modbus, "", "FFFF"},
         {ChecksumStyle::Crc16Xmodem, digits, "31C3"},
         {ChecksumStyle::Crc16Xmodem, "", "0000"},
         {ChecksumStyle::Crc16Ccitt, digits, "29B1"},
         {ChecksumStyle::Crc16Ccitt, "", "FFFF"},
         {ChecksumStyle::Crc16Arc, digits, "BB3D"},
         {ChecksumStyle::Crc16Arc, "", "0000"},
         {ChecksumStyle::Crc8, digits, "F4"},
         {ChecksumStyle::Crc8, "", "00"},
         {ChecksumStyle::Crc32, digits, "CBF43926"},
         {ChecksumStyle::Crc32, "", "00000000"},
         {ChecksumStyle::TwosComplement, digits, "23"},
         {ChecksumStyle::TwosComplement, "", "00"},
         {ChecksumStyle::Crc16Modbus, "\x01\x03\x00\x00\x00\x0A"s, "CDC5"}});  // goes out as C5 CD
}

TEST(Checksum, AnUnknownStyleGivesNothing) {
  for (const std::int16_t style : std::initializer_list<std::int16_t>{-1, 14, 32767})
    EXPECT_EQ(ComputeChecksum("READ", style), "");
  EXPECT_EQ(ComputeChecksum("READ", std::int16_t{2}), "12");
}

}  // namespace
}  // namespace quarlin
