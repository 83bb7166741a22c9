// SPDX-License-Identifier: GPL-3.0-or-later
// The two clocks of the program: the monotonic one, on which pauses and deadlines run, and the time of
// day, which is only shown, logged and differenced.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace quarlin {

using Instant = std::chrono::steady_clock::time_point;
using Duration = std::chrono::steady_clock::duration;

// The date and time of day at this place.
using LocalTime = std::chrono::local_time<std::chrono::nanoseconds>;

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Instant Now() const = 0;
  virtual LocalTime Local() const = 0;
};

// The machine's clocks.
class SystemClock : public Clock {
 public:
  Instant Now() const override;
  LocalTime Local() const override;

 private:
  // The distance to UTC changes on quarter hours only, so it is asked for once in each.
  mutable std::int64_t quarterHour_ = -1;
  mutable std::chrono::seconds offset_{0};
};

// The time by which the system stamps its files, since 1970. Never shown, and never a deadline: it jumps
// when the clock of the machine is set.
std::chrono::nanoseconds FileClockNow();

double SecondsSinceMidnight(LocalTime time);

// |later - earlier| of two times since midnight, modulo a day: 86399 to 1 is 2 seconds.
double SecondsApart(double earlier, double later);

// The millisecond tick, wrapping at 32 bits; for intervals only.
std::uint32_t MillisecondTick(Instant now);

std::string DateText(LocalTime time);      // "dd/mm/yy"
std::string TimeText(LocalTime time);      // "hh:mm:ss"
std::string DateTimeText(LocalTime time);  // "dd/mm/yy hh:mm:ss"

// How far the time of this place was ahead of UTC, by the system's rules for its time zone.
std::chrono::seconds UtcOffsetAt(LocalTime time);

// "2026-02-03T12:34:56", and the same to the microsecond with the distance to UTC behind it,
// "2026-02-03T12:34:56.789012+01:00".
std::string IsoText(LocalTime time);
std::string IsoText(LocalTime time, std::chrono::seconds utcOffset);

// A duration as "hh:mm:ss"; it counts on past 24 hours.
std::string ElapsedText(Duration elapsed);

}  // namespace quarlin
