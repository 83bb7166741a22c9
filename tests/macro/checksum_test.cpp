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

TEST(Checksum, AnUnknownStyleGivesNothing) {
  for (const std::int16_t style : std::initializer_list<std::int16_t>{-1, 7, 32767})
    EXPECT_EQ(ComputeChecksum("READ", style), "");
  EXPECT_EQ(ComputeChecksum("READ", std::int16_t{2}), "12");
}

}  // namespace
}  // namespace quarlin
