// SPDX-License-Identifier: GPL-3.0-or-later
// For tables that are looked up by an enumeration's value: a row that stands in the wrong place does not
// compile.
#pragma once

#include <array>
#include <cstddef>

namespace quarlin {

// Whether the key of each row is its place, and `last` that of the last one.
template <class Row, std::size_t count, class Enum>
constexpr bool StandInOrder(const std::array<Row, count>& rows, Enum Row::*key, Enum last) {
  if (static_cast<std::size_t>(last) + 1 != count) return false;
  for (std::size_t place = 0; place < count; ++place) {
    if (rows[place].*key != static_cast<Enum>(place)) return false;
  }
  return true;
}

}  // namespace quarlin
