// SPDX-License-Identifier: GPL-3.0-or-later
// The two means that an instrument can take while it measures: over its last values, all alike; and over all
// of them, the older the less.
#pragma once

#include <vector>

#include "data/compensated_sum.h"
#include "data/started_filter.h"

namespace quarlin {

class MovingAverage : public StartedFilter {
 public:
  explicit MovingAverage(int width) : last_(static_cast<std::size_t>(width)) {}

 private:
  void Start(double first) override;
  double Next(double value) override;
  void AddUpAnew();

  std::vector<double> last_;  // a ring
  std::size_t oldest_ = 0;
  CompensatedSum sum_;  // of them
};

class Exponential : public StartedFilter {
 public:
  explicit Exponential(double alpha) : alpha_(alpha) {}

 private:
  void Start(double first) override { mean_ = CompensatedSum(first); }
  double Next(double value) override;

  double alpha_;
  CompensatedSum mean_;
};

}  // namespace quarlin
