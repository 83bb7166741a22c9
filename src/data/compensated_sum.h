// SPDX-License-Identifier: GPL-3.0-or-later
// A sum that keeps what the rounding of each addition loses, so that the number of the additions does not let
// it drift, nor do values that come and go again, unless they are 1e15 times as large.
#pragma once

#include <cmath>

namespace quarlin {

class CompensatedSum {
 public:
  CompensatedSum() = default;
  explicit CompensatedSum(double value, double lost = 0) : sum_(value), lost_(lost) {}

  void Add(double value) {
    const double sum = sum_ + value;
    const double taken = sum - sum_;  // what of `value` has arrived
    const double lost = lost_ + (sum_ - (sum - taken)) + (value - taken);
    sum_ = sum + lost;
    lost_ = lost - (sum_ - sum);
  }
  double Value() const { return sum_ + lost_; }

  // Value() / count with one rounding only: the mean of equal values is that value.
  double MeanOver(double count) const {
    const double mean = sum_ / count;
    return mean + (std::fma(-mean, count, sum_) + lost_) / count;
  }

 private:
  double sum_ = 0;
  double lost_ = 0;
};

}  // namespace quarlin
