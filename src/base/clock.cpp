#include "base/clock.h"

#include <fmt/format.h>

#include <cmath>
#include <ctime>

namespace quarlin {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

constexpr double secondsPerDay = 86400;

}  // namespace

Instant SystemClock::Now() const {
  return std::chrono::steady_clock::now();
}

LocalTime SystemClock::Local() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  const std::int64_t quarter = floor<seconds>(sinceEpoch).count() / 900;
  if (quarter != quarterHour_) {
    const std::time_t time = floor<seconds>(sinceEpoch).count();
    std::tm parts{};
    localtime_r(&time, &parts);
    offset_ = seconds(parts.tm_gmtoff);
    quarterHour_ = quarter;
  }
  return LocalTime(std::chrono::nanoseconds(sinceEpoch) + offset_);
}

std::chrono::nanoseconds FileClockNow() {
  return std::chrono::system_clock::now().time_since_epoch();
}

double SecondsSinceMidnight(LocalTime time) {
  return std::chrono::duration<double>(time - floor<days>(time)).count();
}

double SecondsApart(double earlier, double later) {
  const double apart = std::fmod(later - earlier, secondsPerDay);
  return apart < 0 ? apart + secondsPerDay : apart;
}

std::uint32_t MillisecondTick(Instant now) {
  return static_cast<std::uint32_t>(floor<std::chrono::milliseconds>(now.time_since_epoch()).count());
}

std::string DateText(LocalTime time) {
  const std::chrono::year_month_day date(floor<days>(time));
  return fmt::format("{:02}/{:02}/{:02}", static_cast<unsigned>(date.day()),
                     static_cast<unsigned>(date.month()), static_cast<int>(date.year()) % 100);
}

std::string TimeText(LocalTime time) {
  return ElapsedText(time - floor<days>(time));
}

std::string DateTimeText(LocalTime time) {
  return DateText(time) + " " + TimeText(time);
}

std::string ElapsedText(Duration elapsed) {
  const std::int64_t total = floor<seconds>(elapsed).count();
  return fmt::format("{:02}:{:02}:{:02}", total / 3600, total / 60 % 60, total % 60);
}

}  // namespace quarlin
