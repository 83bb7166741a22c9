// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/averages.h"

#include <algorithm>
#include <cmath>

namespace quarlin {

void MovingAverage::Start(double first) {
  std::fill(last_.begin(), last_.end(), first);
  const auto width = static_cast<double>(last_.size());
  sum_ = CompensatedSum(width * first, std::fma(width, first, -(width * first)));
}

double MovingAverage::Next(double value) {
  sum_.Add(-last_[oldest_]);
  sum_.Add(value);
  last_[oldest_] = value;
  if (++oldest_ == last_.size()) AddUpAnew();
  return sum_.MeanOver(static_cast<double>(last_.size()));
}

// Once around the ring: what a huge value that has left took of the others' digits is back by then.
void MovingAverage::AddUpAnew() {
  oldest_ = 0;
  sum_ = CompensatedSum();
  for (const double value : last_) sum_.Add(value);
}

double Exponential::Next(double value) {
  mean_.Add(alpha_ * (value - mean_.Value()));
  return mean_.Value();
}

}  // namespace quarlin
