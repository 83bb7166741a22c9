// SPDX-License-Identifier: GPL-3.0-or-later
// The receive parser: rewrites an answer by a format of one-letter instructions. The table of the letters
// is in docs/parser.md.
#pragma once

#include <string>
#include <string_view>

#include "base/clock.h"

namespace quarlin {

class Parser {
 public:
  // `clock` is read by the letters T and D.
  explicit Parser(const Clock& clock) : clock_(clock) {}

  // Walks format and answer together, one received character for each instruction. A number that cannot
  // be converted gives nothing.
  std::string ParseReceived(std::string_view format, std::string_view received);

  // One step of the number being collected: `flag` is its instruction letter, `character` its next digit.
  // Returns the translation of the number that this step ended. Both empty: ends any number.
  std::string ParserNumberStep(std::string_view flag, std::string_view character);

 private:
  const Clock& clock_;
  std::string ParserNumberFlag;
  std::string ParserDigits;
};

}  // namespace quarlin
