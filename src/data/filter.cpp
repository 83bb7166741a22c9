// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/filter.h"

#include <algorithm>

#include "data/averages.h"
#include "data/moving_median.h"
#include "data/sections.h"

namespace quarlin {
namespace {

class Unfiltered : public Filter {
 public:
  double Step(double value) override { return value; }
  void Reset() override {}
};

void FilterForth(Filter& filter, std::span<double> values) {
  filter.Reset();
  for (double& value : values) value = filter.Step(value);
}

}  // namespace

std::unique_ptr<Filter> MakeFilter(const FilterSettings& settings) {
  switch (settings.kind) {
    case FilterKind::None:
      break;
    case FilterKind::MovingAverage:
      return std::make_unique<MovingAverage>(settings.width);
    case FilterKind::Median:
      return std::make_unique<MovingMedian>(settings.width);
    case FilterKind::Exponential:
      return std::make_unique<Exponential>(settings.alpha);
    case FilterKind::Butterworth:
    case FilterKind::Chebyshev:
    case FilterKind::Notch:
      return std::make_unique<SectionChain>(SectionsOf(settings));
  }
  return std::make_unique<Unfiltered>();
}

std::vector<double> Filtered(const FilterSettings& settings, std::span<const double> values, bool zeroPhase) {
  std::vector<double> result(values.begin(), values.end());
  const std::unique_ptr<Filter> filter = MakeFilter(settings);
  FilterForth(*filter, result);
  if (!zeroPhase) return result;
  std::reverse(result.begin(), result.end());
  FilterForth(*filter, result);
  std::reverse(result.begin(), result.end());
  return result;
}

}  // namespace quarlin
