// SPDX-License-Identifier: GPL-3.0-or-later
// What all filters share: gaps pass, and the first value sets the state.
#pragma once

#include <cmath>

#include "data/filter.h"

namespace quarlin {

class StartedFilter : public Filter {
 public:
  double Step(double value) final {
    if (!std::isfinite(value)) return value;
    if (!started_) Start(value);
    started_ = true;
    return Next(value);
  }
  void Reset() final { started_ = false; }

 private:
  // Sets the state in which the filter is after `first` has stood at its input for ever.
  virtual void Start(double first) = 0;
  virtual double Next(double value) = 0;

  bool started_ = false;
};

}  // namespace quarlin
