// SPDX-License-Identifier: GPL-3.0-or-later
// A log that a reader can follow: one row for each line of the traffic, with its time and direction, and
// every control character as its code.
//
//   2026-11-22 10:00:00.123 -> READ{0D}{0A}
//   2026-11-22 10:00:00.135 <- 12.346 kg{0D}{0A}
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/clock.h"

namespace quarlin {

enum class Direction { Sent, Received };

class LogRows {
 public:
  static constexpr std::size_t longestRow = 4096;  // bytes of traffic; a longer line is broken

  // What the bytes add to the log. A row ends behind CR, LF or CR LF, and where the direction changes; only
  // then its end is written, so that the pair can come in two pieces.
  std::string Add(Direction direction, std::string_view bytes, LocalTime now);

  // The end of the row that is open; nothing when there is none.
  std::string End();

 private:
  bool EndsBefore(Direction direction, char next) const;

  Direction direction_ = Direction::Sent;
  std::size_t length_ = 0;  // bytes of the open row; 0 when there is none
  char last_ = 0;
};

}  // namespace quarlin
