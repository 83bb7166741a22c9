// SPDX-License-Identifier: GPL-3.0-or-later
// The errors that a serial line makes while it receives, as its driver counts them.
#pragma once

#include <cstdint>
#include <string>

namespace quarlin {

struct LineErrors {
  std::uint64_t parity = 0;
  std::uint64_t framing = 0;
  std::uint64_t overrun = 0;  // bytes that chip or driver had no room for
  std::uint64_t breaks = 0;   // no error when the peer means it, and so not in the sum

  std::uint64_t Sum() const { return parity + framing + overrun; }
  bool operator==(const LineErrors&) const = default;
};

LineErrors operator+(const LineErrors& left, const LineErrors& right);
LineErrors operator-(const LineErrors& left, const LineErrors& right);

// "3 framing, 1 parity"; empty when there are none.
std::string InWords(const LineErrors& errors);

}  // namespace quarlin
