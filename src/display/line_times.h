// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of the display by the time of day at which they came.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "display/text_ring.h"

namespace quarlin {

// Of "hh:mm", "hh:mm:ss" and "hh:mm:ss.mmm", blanks around it or not; nothing for any other text.
std::optional<Duration> TimeOfDay(std::string_view text);

// The kept line that came nearest to a time of day, the latest of them where the ring holds more than a day.
// Nothing where that time lies before the first line or behind the last one, seconds being looked at as a
// whole: 19:04:14 is not before 19:04:14.776.
std::optional<std::uint64_t> LineNearest(const TextRing& ring, Duration timeOfDay);

}  // namespace quarlin
