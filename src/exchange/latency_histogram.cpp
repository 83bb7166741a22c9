// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/latency_histogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace quarlin {
namespace {

// Bucket b holds the nanoseconds n with
//
//   n < 128          n = b
//   otherwise        n >> shift = 128 + b % 128   where shift = b / 128 - 1
constexpr int stepBits = 7;
constexpr std::uint64_t steps = std::uint64_t{1} << stepBits;
constexpr int longestBits = 47;
constexpr std::uint64_t longest = (std::uint64_t{1} << longestBits) - 1;
constexpr std::size_t bucketCount = (longestBits - stepBits + 1) * steps;

std::size_t BucketOf(std::uint64_t nanoseconds) {
  if (nanoseconds < steps) return nanoseconds;
  const int shift = static_cast<int>(std::bit_width(nanoseconds)) - 1 - stepBits;
  return static_cast<std::size_t>(shift) * steps + (nanoseconds >> shift);
}

std::uint64_t MiddleOf(std::size_t bucket) {
  if (bucket < steps) return bucket;
  const std::size_t shift = bucket / steps - 1;
  return ((steps + bucket % steps) << shift) + ((std::uint64_t{1} << shift) >> 1);
}

Duration FromNanoseconds(std::uint64_t nanoseconds) {
  return std::chrono::nanoseconds(static_cast<std::int64_t>(nanoseconds));
}

}  // namespace

LatencyHistogram::LatencyHistogram() : buckets_(bucketCount) {}

void LatencyHistogram::Add(Duration latency) {
  const std::int64_t nanoseconds = std::chrono::nanoseconds(latency).count();
  const auto held = std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(nanoseconds, 0)), longest);
  const Duration time = FromNanoseconds(held);
  least_ = count_ == 0 ? time : std::min(least_, time);
  greatest_ = std::max(greatest_, time);
  ++buckets_[BucketOf(held)];
  ++count_;
  sum_ += static_cast<double>(held);
}

void LatencyHistogram::Clear() {
  std::fill(buckets_.begin(), buckets_.end(), 0);
  count_ = 0;
  sum_ = 0;
  least_ = greatest_ = {};
}

Duration LatencyHistogram::Least() const {
  return least_;
}

Duration LatencyHistogram::Greatest() const {
  return greatest_;
}

Duration LatencyHistogram::Mean() const {
  if (count_ == 0) return {};
  return FromNanoseconds(static_cast<std::uint64_t>(std::llround(sum_ / static_cast<double>(count_))));
}

Duration LatencyHistogram::Quantile(double fraction) const {
  if (count_ == 0) return {};
  const double share = std::ceil(std::clamp(fraction, 0.0, 1.0) * static_cast<double>(count_));
  const auto wanted = std::max<std::uint64_t>(static_cast<std::uint64_t>(share), 1);
  std::uint64_t seen = 0;
  std::size_t bucket = 0;
  while (bucket + 1 < bucketCount && (seen += buckets_[bucket]) < wanted) ++bucket;
  return std::clamp(FromNanoseconds(MiddleOf(bucket)), least_, greatest_);
}

}  // namespace quarlin
