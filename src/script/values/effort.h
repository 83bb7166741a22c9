// SPDX-License-Identifier: GPL-3.0-or-later
// How much a script has had done since somebody last looked whether it may go on. Counted in steps of some
// ten nanoseconds, wherever the work is done: so a loop of a few rounds that cost much comes to the next
// look as soon as one of many rounds that cost little. The count is the process's, as its one thread is.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quarlin::vbs::effort {

namespace detail {
inline std::int64_t stepsLeft = 0;
}

// From now on, the next look is due after so many steps.
inline void Begin(std::int64_t steps) {
  detail::stepsLeft = steps;
}

// A round of a loop, or a call. Whether it is time to look.
[[gnu::always_inline]] inline bool Step() {
  return --detail::stepsLeft <= 0;
}

// Work that cannot look by itself.
inline void Spend(std::size_t steps) {
  detail::stepsLeft -= static_cast<std::int64_t>(steps);
}

// Bytes that were gone through once. A few are part of whatever step they are gone through in.
inline void Touch(std::size_t bytes) {
  constexpr std::size_t bytesPerStep = 64;
  Spend(bytes / bytesPerStep);
}

inline std::int64_t StepsLeft() {
  return detail::stepsLeft;
}

// What a member of one of the program's objects may cost, whose work nobody else counts.
inline constexpr std::size_t stepsOfHostCall = 1000;

}  // namespace quarlin::vbs::effort
