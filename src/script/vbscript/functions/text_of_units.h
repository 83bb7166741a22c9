// SPDX-License-Identifier: GPL-3.0-or-later
// Makes texts whose code units follow from their place.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "script/values/pace.h"
#include "script/values/value.h"

namespace quarlin::vbs {

// An empty text with room for `capacity` units. Error 14 beyond longestText.
inline Value RoomForText(std::size_t capacity) {
  if (capacity > longestText) throw ScriptError(outOfStringSpace);
  return Value::Adopt(TextBody::Make({}, capacity));
}

// `unitAt(0)` to `unitAt(length - 1)`. Made piece by piece, so that a long one is never in memory twice, and
// the script can be stopped in the middle of it.
template <class UnitAt>
Value TextOfUnits(Services& services, std::size_t length, UnitAt unitAt) {
  if (length == 1) return Value::Character(unitAt(std::size_t{0}));
  Value text = RoomForText(length);
  Pace pace(services);
  std::array<char16_t, 256> piece;
  for (std::size_t done = 0; done < length;) {
    const std::size_t count = std::min(piece.size(), length - done);
    for (std::size_t place = 0; place < count; ++place) piece[place] = unitAt(done + place);
    text.AppendText({piece.data(), count});
    done += count;
    pace.Done(count);
  }
  return text;
}

}  // namespace quarlin::vbs
