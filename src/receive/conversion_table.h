// SPDX-License-Identifier: GPL-3.0-or-later
// Which text stands for which received byte; docs/conversion.md describes the file to the user.
//
//   002<TAB><STX>       a code in three decimal digits,
//   &H06<TAB><ACK>      or in hexadecimal ones
//   128-159<TAB>.       every code of a range
//   000<TAB>            no text: the byte is left out
//
// Of two lines for one code the later one counts.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quarlin {

class ConversionTable {
 public:
  static constexpr std::size_t longestText = 32;  // bytes that one may become

  // Converts nothing.
  ConversionTable() = default;

  // Reads the lines of a file. A faulty one is left out.
  explicit ConversionTable(std::string_view content);

  // What is wrong with the faulty lines, as "line 3: 300 is no code from 000 to 255".
  const std::vector<std::string>& Faults() const { return faults_; }

  // What the bytes become. It stands in `bytes` or `room`, and holds as long as they do.
  std::string_view Convert(std::string_view bytes, std::string& room) const;

 private:
  std::string TakeLine(std::string_view line);
  std::size_t UnconvertedLength(std::string_view bytes) const;

  std::array<bool, 256> converted_{};
  std::array<std::string, 256> texts_;
  std::vector<std::string> faults_;
};

}  // namespace quarlin
