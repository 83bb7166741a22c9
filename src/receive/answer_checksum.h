// SPDX-License-Identifier: GPL-3.0-or-later
// The checksum that an answer carries in its last characters.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

// What an answer carried and what it should have carried.
struct ChecksumMismatch {
  std::string received;
  std::string computed;
};

// The list that the user chooses from: "None" and behind it the checksums that can be verified.
std::vector<std::string> AnswerChecksumNames();

// Verifies by the entry of that list: 0 None, 1 Motorola, 2 Sysway, 3 Mod8, 4 LRC, 5 LRC raw, 6 CRC16MODBUS
// ...
//
// All but entry 5 take the text without any CR and LF: its last characters, as many as the checksum has
// digits, are compared with the checksum of those before them (two of Mod8, which is one raw character and
// never matches). Entry 5 compares the last character of `stripped`, the text without its terminator, whose
// raw value may be a CR. Nothing when it matches, when nothing is verified, and for a text that has less than
// 3 characters more than are compared, or fewer than 5.
std::optional<ChecksumMismatch> FindChecksumMismatch(std::string_view text, std::string_view stripped,
                                                     int listIndex);

}  // namespace quarlin
