// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/line_times.h"

#include <algorithm>
#include <array>

namespace quarlin {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

// Takes a number of so many digits at most; nothing when there is none.
std::optional<int> TakeNumber(std::string_view& text, std::size_t mostDigits) {
  int number = 0;
  std::size_t digits = 0;
  for (; digits < std::min(mostDigits, text.size()); ++digits) {
    const char digit = text[digits];
    if (digit < '0' || digit > '9') break;
    number = 10 * number + (digit - '0');
  }
  if (digits == 0) return std::nullopt;
  text.remove_prefix(digits);
  return number;
}

bool Take(std::string_view& text, char character) {
  if (!text.starts_with(character)) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<int> TakeThousandths(std::string_view& text) {
  const std::size_t before = text.size();
  const auto number = TakeNumber(text, 3);
  if (!number) return std::nullopt;
  constexpr std::array<int, 4> factors{0, 100, 10, 1};
  return *number * factors[before - text.size()];
}

// The first kept line that came at `time` or later; the clock is taken as going forward.
std::uint64_t FirstFrom(const TextRing& ring, LocalTime time) {
  std::uint64_t from = ring.FirstLine();
  for (std::uint64_t count = ring.EndLine() - from; count > 0;) {
    const std::uint64_t half = count / 2;
    if (ring.TimeOf(from + half) < time) {
      from += half + 1;
      count -= half + 1;
    } else {
      count = half;
    }
  }
  return from;
}

}  // namespace

std::optional<Duration> TimeOfDay(std::string_view text) {
  while (Take(text, ' ')) continue;
  const auto hours = TakeNumber(text, 2);
  if (!hours || *hours > 23 || !Take(text, ':')) return std::nullopt;
  const auto minutes = TakeNumber(text, 2);
  if (!minutes || *minutes > 59) return std::nullopt;
  std::optional<int> second = 0;
  std::optional<int> thousandths = 0;
  if (Take(text, ':')) {
    second = TakeNumber(text, 2);
    if (!second || *second > 59) return std::nullopt;
    if (Take(text, '.')) thousandths = TakeThousandths(text);
  }
  while (Take(text, ' ')) continue;
  if (!thousandths || !text.empty()) return std::nullopt;
  return std::chrono::hours(*hours) + std::chrono::minutes(*minutes) + seconds(*second) +
         std::chrono::milliseconds(*thousandths);
}

std::optional<std::uint64_t> LineNearest(const TextRing& ring, Duration timeOfDay) {
  if (ring.FirstLine() == ring.EndLine()) return std::nullopt;
  const LocalTime first = ring.TimeOf(ring.FirstLine());
  const LocalTime last = ring.TimeOf(ring.EndLine() - 1);
  LocalTime wanted = floor<days>(last) + timeOfDay;
  if (floor<seconds>(wanted) > last) wanted -= days(1);
  if (wanted < floor<seconds>(first)) return std::nullopt;
  const std::uint64_t after = FirstFrom(ring, wanted);
  if (after == ring.FirstLine()) return after;
  if (after == ring.EndLine()) return after - 1;
  return wanted - ring.TimeOf(after - 1) <= ring.TimeOf(after) - wanted ? after - 1 : after;
}

}  // namespace quarlin
