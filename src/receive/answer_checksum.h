// The checksum that an answer carries in its last characters.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarlin {

// What an answer carried and what it should have carried.
struct ChecksumMismatch {
  std::string received;
  std::string computed;
};

// Verifies by the entry of the checksum list: 0 None, 1 Motorola, 2 Sysway, 3 Mod8, 4 LRC, 5 LRC raw.
//
// Entries 1 to 4 take the text without any CR and LF: its last two characters are compared with the
// checksum of those before them (so Mod8, which is one raw character, never matches). Entry 5 compares
// the last character of `stripped`, the text without its terminator, whose raw value may be a CR.
// Nothing when it matches, when nothing is verified, and for a text of fewer than 5 characters.
std::optional<ChecksumMismatch> FindChecksumMismatch(std::string_view text, std::string_view stripped,
                                                     int listIndex);

}  // namespace quarlin
