// SPDX-License-Identifier: GPL-3.0-or-later
// Curves with what a filter makes of them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "curves/curve_rules.h"
#include "data/series.h"

namespace quarlin {

class FilteredCurves {
 public:
  struct Curve {
    Series raw;
    Series filtered;                 // empty while there is no filter
    std::unique_ptr<Filter> filter;  // one way, ready for the next point
  };

  // Other curves in place of those before, and through the filter.
  void Set(std::vector<Series> raw);

  // A point behind those of that curve, and through the filter, one way. True where an old one had to leave
  // for the first time.
  bool Append(std::size_t curve, Point point);

  // What stands behind a number of that curve. Another unit than before counts when it comes twice in a row:
  // what comes once is a disturbed answer, or a checksum that looks like letters.
  void SetUnit(std::size_t curve, std::string_view unit);

  // All points through that filter; an unusable choice means none.
  void SetFilter(const FilterChoice& choice);

  // A Curve stays where it is until Set.
  const std::vector<std::unique_ptr<Curve>>& Curves() const { return curves_; }
  bool Empty() const;
  bool Filtering() const { return choice_.Usable(); }

 private:
  void Refilter(Curve& curve) const;

  std::vector<std::unique_ptr<Curve>> curves_;
  std::vector<std::string> otherUnits_;  // of each curve: what its last number had in place of raw.unit
  FilterChoice choice_;
};

}  // namespace quarlin
