// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/interval_statistics.h"

#include <cmath>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr std::int32_t intervalsMeant = 1000;  // after so many the mean starts anew

}  // namespace

void IntervalStatistics::Received(std::string_view text) {
  if (controls_.chkLogOnly.Checked()) return;
  const auto terminator = static_cast<char>(controls_.txtterm.Integer());
  if (text.find(terminator) == std::string_view::npos) return;
  const double now = Midnight();
  State.RxIntervalSum += SecondsApart(State.RxStampTime, now);
  ++State.RxIntervalCount;
  constexpr double noise = 1e-6;  // of the sum: 20 ms must not become 19.9
  const double mean = std::floor(State.RxIntervalSum / State.RxIntervalCount * 10000 + noise) / 10;
  controls_.lblRxms.SetCaption(DecimalText(mean));
  if (State.RxIntervalCount > intervalsMeant) {
    State.RxIntervalCount = 0;
    State.RxIntervalSum = 0;
  }
  State.RxStampTime = now;
}

}  // namespace quarlin
