// SPDX-License-Identifier: GPL-3.0-or-later
// How long answers took, over a whole run, in memory that does not grow: 128 buckets to each power of two of
// nanoseconds, so a bucket is at most 1 % wide wherever it lies.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/clock.h"

namespace quarlin {

class LatencyHistogram {
 public:
  LatencyHistogram();

  // A negative time counts as 0, one of more than 39 hours as 39 hours.
  void Add(Duration latency);
  void Clear();

  std::uint64_t Count() const { return count_; }

  // Exact; 0 while nothing was added.
  Duration Least() const;
  Duration Greatest() const;
  Duration Mean() const;

  // The time within which `fraction` (0 to 1) of all were there, to 1 %, never outside Least() to Greatest();
  // 0 while nothing was added.
  Duration Quantile(double fraction) const;

 private:
  std::vector<std::uint64_t> buckets_;
  std::uint64_t count_ = 0;
  double sum_ = 0;  // nanoseconds
  Duration least_{};
  Duration greatest_{};
};

}  // namespace quarlin
